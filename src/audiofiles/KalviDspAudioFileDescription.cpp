#include "audiofiles/KalviDspAudioFileDescription.h"

#include "audiofiles/KalviDspAudioFileReader.h"
#include "text/KalviDspStringHelper.h"

namespace vlk {

String describeAudioFile(const AudioFileReader& reader)
{
    const AudioFilesMetadata& metadata = reader.getMetadata();
    return reader.getFilePath() + "\n(" + metadata.getChannelsDescription() + ", " +
           metadata.getSampleRateDescription() + ", " + toString(reader.getNumSamples()) + " samples, " +
           metadata.getDurationDescription() + ", " + metadata.getBitDepthDescription() + ", " +
           metadata.getFormatDescription() + ", " + File(reader.getFilePath()).getSizeText() + ")";
}

} // namespace vlk
