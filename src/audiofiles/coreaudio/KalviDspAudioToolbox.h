#pragma once

#include <cstdint>

// The operations of the platform's audio file services that CoreAudioFileReader calls, under the platform's
// own names and types, so that the reader reads the same over any implementation. Here they are implemented
// over FFmpeg's libraries (KalviDspAudioToolboxOnFfmpeg.cpp), or absent when the build leaves FFmpeg out
// (KalviDspAudioToolboxAbsent.cpp): then no file opens.
//
// Threads: an AudioFileID and the ExtAudioFileRef on it are used by one thread at a time; the callbacks run
// on the calling thread, inside the call that needs bytes.

using OSStatus = std::int32_t;
using UInt32 = std::uint32_t;
using SInt64 = std::int64_t;
using Float64 = double;
using Boolean = unsigned char;

using AudioFileTypeID = UInt32;
using AudioFormatID = UInt32;
using AudioFormatFlags = UInt32;
using ExtAudioFilePropertyID = UInt32;

struct AudioStreamBasicDescription
{
    Float64 mSampleRate;
    AudioFormatID mFormatID;
    AudioFormatFlags mFormatFlags;
    UInt32 mBytesPerPacket;
    UInt32 mFramesPerPacket;
    UInt32 mBytesPerFrame;
    UInt32 mChannelsPerFrame;
    UInt32 mBitsPerChannel;
    UInt32 mReserved;
};

struct AudioBuffer
{
    UInt32 mNumberChannels;
    UInt32 mDataByteSize;
    void* mData;
};

// Allocated with room for mNumberBuffers buffers; reach them through a pointer to mBuffers, not by index
// into the declared array of one.
struct AudioBufferList
{
    UInt32 mNumberBuffers;
    AudioBuffer mBuffers[1];
};

using AudioFileID = struct OpaqueAudioFileID*;
using ExtAudioFileRef = struct OpaqueExtAudioFile*;

using AudioFile_ReadProc = OSStatus (*)(void* inClientData, SInt64 inPosition, UInt32 requestCount,
                                        void* buffer, UInt32* actualCount);
using AudioFile_WriteProc = OSStatus (*)(void* inClientData, SInt64 inPosition, UInt32 requestCount,
                                         const void* buffer, UInt32* actualCount);
using AudioFile_GetSizeProc = SInt64 (*)(void* inClientData);
using AudioFile_SetSizeProc = OSStatus (*)(void* inClientData, SInt64 inSize);

constexpr UInt32 audioToolboxCode(const char (&text)[5])
{
    return static_cast<UInt32>(static_cast<unsigned char>(text[0])) << 24 |
           static_cast<UInt32>(static_cast<unsigned char>(text[1])) << 16 |
           static_cast<UInt32>(static_cast<unsigned char>(text[2])) << 8 |
           static_cast<UInt32>(static_cast<unsigned char>(text[3]));
}

constexpr AudioFormatID kAudioFormatLinearPCM = audioToolboxCode("lpcm");
constexpr AudioFormatFlags kAudioFormatFlagIsFloat = 1u << 0;
constexpr AudioFormatFlags kAudioFormatFlagIsNonInterleaved = 1u << 5;

constexpr ExtAudioFilePropertyID kExtAudioFileProperty_FileDataFormat = audioToolboxCode("ffmt");
constexpr ExtAudioFilePropertyID kExtAudioFileProperty_FileLengthFrames = audioToolboxCode("#frm");
constexpr ExtAudioFilePropertyID kExtAudioFileProperty_ClientDataFormat = audioToolboxCode("cfmt");

constexpr OSStatus noErr = 0;
constexpr OSStatus kAudio_ParamError = -50;
constexpr OSStatus kAudio_MemFullError = -108;
constexpr OSStatus kAudioFilePositionError = -40;
constexpr OSStatus kAudioFileUnsupportedFileTypeError = static_cast<OSStatus>(audioToolboxCode("typ?"));
constexpr OSStatus kAudioFileInvalidFileError = static_cast<OSStatus>(audioToolboxCode("dta?"));
constexpr OSStatus kAudioFileUnsupportedPropertyError = static_cast<OSStatus>(audioToolboxCode("pty?"));
constexpr OSStatus kAudioFileBadPropertySizeError = static_cast<OSStatus>(audioToolboxCode("!siz"));
constexpr OSStatus kAudioConverterErr_FormatNotSupported = static_cast<OSStatus>(audioToolboxCode("fmt?"));

extern "C" {

// Opens the file whose bytes the callbacks give; the type is found from the content. No write or set-size
// callback is taken: the file is read only.
OSStatus AudioFileOpenWithCallbacks(void* inClientData, AudioFile_ReadProc inReadFunc,
                                    AudioFile_WriteProc inWriteFunc, AudioFile_GetSizeProc inGetSizeFunc,
                                    AudioFile_SetSizeProc inSetSizeFunc, AudioFileTypeID inFileTypeHint,
                                    AudioFileID* outAudioFile);
OSStatus AudioFileClose(AudioFileID inAudioFile);

// Decoding on top of an open file, for reading only. The file outlives its ExtAudioFileRef.
OSStatus ExtAudioFileWrapAudioFileID(AudioFileID inFileID, Boolean inForWriting,
                                     ExtAudioFileRef* outExtAudioFile);
OSStatus ExtAudioFileGetProperty(ExtAudioFileRef inExtAudioFile, ExtAudioFilePropertyID inPropertyID,
                                 UInt32* ioPropertyDataSize, void* outPropertyData);
OSStatus ExtAudioFileSetProperty(ExtAudioFileRef inExtAudioFile, ExtAudioFilePropertyID inPropertyID,
                                 UInt32 inPropertyDataSize, const void* inPropertyData);
// The next read begins at content frame inFrameOffset: frame 0 is the first frame of the sound, behind
// any start padding of the codec.
OSStatus ExtAudioFileSeek(ExtAudioFileRef inExtAudioFile, SInt64 inFrameOffset);
// Reads up to *ioNumberFrames frames in the client format and writes back how many came; 0 at the end. Here
// the frames behind those that came are written as zeros.
OSStatus ExtAudioFileRead(ExtAudioFileRef inExtAudioFile, UInt32* ioNumberFrames, AudioBufferList* ioData);
OSStatus ExtAudioFileDispose(ExtAudioFileRef inExtAudioFile);

} // extern "C"
