// The audio file services when the build leaves FFmpeg out: no file opens, so CoreAudioFileReader stays
// closed and the factory refuses what no native reader takes.

#include "audiofiles/coreaudio/KalviDspAudioToolbox.h"

OSStatus AudioFileOpenWithCallbacks(void*, AudioFile_ReadProc, AudioFile_WriteProc, AudioFile_GetSizeProc,
                                    AudioFile_SetSizeProc, AudioFileTypeID, AudioFileID* outAudioFile)
{
    if (outAudioFile != nullptr)
        *outAudioFile = nullptr;
    return kAudioFileUnsupportedFileTypeError;
}

OSStatus AudioFileClose(AudioFileID)
{
    return kAudio_ParamError;
}

OSStatus ExtAudioFileWrapAudioFileID(AudioFileID, Boolean, ExtAudioFileRef* outExtAudioFile)
{
    if (outExtAudioFile != nullptr)
        *outExtAudioFile = nullptr;
    return kAudio_ParamError;
}

OSStatus ExtAudioFileGetProperty(ExtAudioFileRef, ExtAudioFilePropertyID, UInt32*, void*)
{
    return kAudio_ParamError;
}

OSStatus ExtAudioFileSetProperty(ExtAudioFileRef, ExtAudioFilePropertyID, UInt32, const void*)
{
    return kAudio_ParamError;
}

OSStatus ExtAudioFileSeek(ExtAudioFileRef, SInt64)
{
    return kAudio_ParamError;
}

OSStatus ExtAudioFileRead(ExtAudioFileRef, UInt32*, AudioBufferList*)
{
    return kAudio_ParamError;
}

OSStatus ExtAudioFileDispose(ExtAudioFileRef)
{
    return kAudio_ParamError;
}
