// The audio file services over FFmpeg: an AudioFileID is a demuxer on the caller's callbacks, an
// ExtAudioFileRef a decoder on it that gives non-interleaved 32-bit float at the file's own rate.

#include "audiofiles/coreaudio/KalviDspAudioToolbox.h"
#include "audiofiles/coreaudio/KalviDspFfmpegAudioDecoder.h"
#include "audiofiles/coreaudio/KalviDspFfmpegDemuxer.h"

#include <algorithm>
#include <memory>
#include <vector>

struct OpaqueAudioFileID
{
    std::unique_ptr<vlk::FfmpegDemuxer> demuxer;
};

struct OpaqueExtAudioFile
{
    std::unique_ptr<vlk::FfmpegAudioDecoder> decoder;
    AudioStreamBasicDescription clientFormat{};
    bool hasClientFormat = false;
    std::vector<float*> channels;
};

namespace {

AudioStreamBasicDescription describeFileFormat(const vlk::FfmpegAudioDecoder& decoder)
{
    AudioStreamBasicDescription format{};
    format.mSampleRate = decoder.getSampleRate();
    format.mChannelsPerFrame = static_cast<UInt32>(decoder.getNumChannels());
    format.mBitsPerChannel = static_cast<UInt32>(std::max(decoder.getBitsPerSample(), 0));
    return format;
}

// The one client format on offer: what the decoder gives, unchanged.
bool isDecoderFormat(const AudioStreamBasicDescription& format, const vlk::FfmpegAudioDecoder& decoder)
{
    return format.mFormatID == kAudioFormatLinearPCM &&
           format.mFormatFlags == (kAudioFormatFlagIsFloat | kAudioFormatFlagIsNonInterleaved) &&
           format.mBitsPerChannel == 32 && format.mBytesPerFrame == 4 && format.mBytesPerPacket == 4 &&
           format.mFramesPerPacket == 1 && format.mSampleRate == decoder.getSampleRate() &&
           format.mChannelsPerFrame == static_cast<UInt32>(decoder.getNumChannels());
}

template <typename Value>
OSStatus getValue(const Value& value, UInt32* ioPropertyDataSize, void* outPropertyData)
{
    if (*ioPropertyDataSize < sizeof(Value))
        return kAudioFileBadPropertySizeError;
    *ioPropertyDataSize = sizeof(Value);
    *static_cast<Value*>(outPropertyData) = value;
    return noErr;
}

} // namespace

// The type hint is not needed: the demuxers tell formats by their content.
OSStatus AudioFileOpenWithCallbacks(void* inClientData, AudioFile_ReadProc inReadFunc,
                                    AudioFile_WriteProc inWriteFunc, AudioFile_GetSizeProc inGetSizeFunc,
                                    AudioFile_SetSizeProc inSetSizeFunc, AudioFileTypeID,
                                    AudioFileID* outAudioFile)
{
    if (outAudioFile == nullptr || inReadFunc == nullptr || inGetSizeFunc == nullptr ||
        inWriteFunc != nullptr || inSetSizeFunc != nullptr)
        return kAudio_ParamError;
    *outAudioFile = nullptr;
    std::unique_ptr<vlk::FfmpegDemuxer> demuxer =
        vlk::FfmpegDemuxer::open({inClientData, inReadFunc, inGetSizeFunc});
    if (demuxer == nullptr)
        return kAudioFileUnsupportedFileTypeError;
    *outAudioFile = new OpaqueAudioFileID{std::move(demuxer)};
    return noErr;
}

OSStatus AudioFileClose(AudioFileID inAudioFile)
{
    if (inAudioFile == nullptr)
        return kAudio_ParamError;
    delete inAudioFile;
    return noErr;
}

OSStatus ExtAudioFileWrapAudioFileID(AudioFileID inFileID, Boolean inForWriting,
                                     ExtAudioFileRef* outExtAudioFile)
{
    if (inFileID == nullptr || outExtAudioFile == nullptr || inForWriting)
        return kAudio_ParamError;
    *outExtAudioFile = nullptr;
    std::unique_ptr<vlk::FfmpegAudioDecoder> decoder = vlk::FfmpegAudioDecoder::open(*inFileID->demuxer);
    if (decoder == nullptr)
        return kAudioConverterErr_FormatNotSupported;
    *outExtAudioFile = new OpaqueExtAudioFile;
    (*outExtAudioFile)->decoder = std::move(decoder);
    return noErr;
}

OSStatus ExtAudioFileGetProperty(ExtAudioFileRef inExtAudioFile, ExtAudioFilePropertyID inPropertyID,
                                 UInt32* ioPropertyDataSize, void* outPropertyData)
{
    if (inExtAudioFile == nullptr || ioPropertyDataSize == nullptr || outPropertyData == nullptr)
        return kAudio_ParamError;
    const vlk::FfmpegAudioDecoder& decoder = *inExtAudioFile->decoder;
    switch (inPropertyID) {
    case kExtAudioFileProperty_FileDataFormat:
        return getValue(describeFileFormat(decoder), ioPropertyDataSize, outPropertyData);
    case kExtAudioFileProperty_FileLengthFrames:
        return getValue(SInt64{decoder.getNumFrames()}, ioPropertyDataSize, outPropertyData);
    case kExtAudioFileProperty_ClientDataFormat:
        return getValue(inExtAudioFile->hasClientFormat ? inExtAudioFile->clientFormat
                                                        : describeFileFormat(decoder),
                        ioPropertyDataSize, outPropertyData);
    default:
        return kAudioFileUnsupportedPropertyError;
    }
}

OSStatus ExtAudioFileSetProperty(ExtAudioFileRef inExtAudioFile, ExtAudioFilePropertyID inPropertyID,
                                 UInt32 inPropertyDataSize, const void* inPropertyData)
{
    if (inExtAudioFile == nullptr || inPropertyData == nullptr)
        return kAudio_ParamError;
    if (inPropertyID != kExtAudioFileProperty_ClientDataFormat)
        return kAudioFileUnsupportedPropertyError;
    if (inPropertyDataSize != sizeof(AudioStreamBasicDescription))
        return kAudioFileBadPropertySizeError;
    const auto& format = *static_cast<const AudioStreamBasicDescription*>(inPropertyData);
    if (!isDecoderFormat(format, *inExtAudioFile->decoder))
        return kAudioConverterErr_FormatNotSupported;
    inExtAudioFile->clientFormat = format;
    inExtAudioFile->hasClientFormat = true;
    inExtAudioFile->channels.resize(format.mChannelsPerFrame);
    return noErr;
}

OSStatus ExtAudioFileSeek(ExtAudioFileRef inExtAudioFile, SInt64 inFrameOffset)
{
    if (inExtAudioFile == nullptr)
        return kAudio_ParamError;
    return inExtAudioFile->decoder->seek(inFrameOffset) ? noErr : kAudioFilePositionError;
}

// Frames behind those that came are written as zeros, so that a caller that reads a whole block past the end
// gets silence there.
OSStatus ExtAudioFileRead(ExtAudioFileRef inExtAudioFile, UInt32* ioNumberFrames, AudioBufferList* ioData)
{
    if (inExtAudioFile == nullptr || ioNumberFrames == nullptr || ioData == nullptr ||
        !inExtAudioFile->hasClientFormat || ioData->mNumberBuffers != inExtAudioFile->channels.size())
        return kAudio_ParamError;
    UInt32 numFrames = *ioNumberFrames;
    const AudioBuffer* buffers = ioData->mBuffers;
    for (std::size_t channel = 0; channel < inExtAudioFile->channels.size(); ++channel) {
        if (buffers[channel].mData == nullptr || buffers[channel].mNumberChannels != 1)
            return kAudio_ParamError;
        numFrames = std::min<UInt32>(numFrames, buffers[channel].mDataByteSize / sizeof(float));
        inExtAudioFile->channels[channel] = static_cast<float*>(buffers[channel].mData);
    }
    const std::int64_t numRead = inExtAudioFile->decoder->read(inExtAudioFile->channels.data(), numFrames);
    *ioNumberFrames = static_cast<UInt32>(std::max<std::int64_t>(numRead, 0));
    return numRead < 0 ? kAudioFileInvalidFileError : noErr;
}

OSStatus ExtAudioFileDispose(ExtAudioFileRef inExtAudioFile)
{
    if (inExtAudioFile == nullptr)
        return kAudio_ParamError;
    delete inExtAudioFile;
    return noErr;
}
