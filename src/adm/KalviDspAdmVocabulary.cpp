#include "adm/KalviDspAdmVocabulary.h"

namespace vlk::AdmVocabulary {

const String audioProgramme = "audioProgramme";
const String audioProgrammeIDRef = "audioProgrammeIDRef";
const String audioProgrammeIDPrefix = "APR_";

const String audioContent = "audioContent";
const String audioContentIDRef = "audioContentIDRef";
const String audioContentIDPrefix = "ACO_";

const String audioObject = "audioObject";
const String audioObjectIDRef = "audioObjectIDRef";
const String audioObjectIDPrefix = "AO_";

const String audioPackFormat = "audioPackFormat";
const String audioPackFormatIDRef = "audioPackFormatIDRef";
const String audioPackFormatIDPrefix = "AP_";

const String audioChannelFormat = "audioChannelFormat";
const String audioChannelFormatIDRef = "audioChannelFormatIDRef";
const String audioChannelFormatIDPrefix = "AC_";

const String audioTrackFormat = "audioTrackFormat";
const String audioTrackFormatIDRef = "audioTrackFormatIDRef";
const String audioTrackFormatIDPrefix = "AT_";

const String audioStreamFormat = "audioStreamFormat";
const String audioStreamFormatIDRef = "audioStreamFormatIDRef";
const String audioStreamFormatIDPrefix = "AS_";

const String audioBlockFormat = "audioBlockFormat";
const String audioBlockFormatIDRef = "audioBlockFormatIDRef";
const String audioBlockFormatIDPrefix = "AB_";

const String audioTrackUID = "audioTrackUID";
const String audioTrackUIDRef = "audioTrackUIDRef";
const String audioTrackUIDPrefix = "ATU_";

const String ambisonicNormalisation = "SN3D";
const String ambisonicChannelOrder = "ACN";

} // namespace vlk::AdmVocabulary
