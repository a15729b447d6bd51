#pragma once

#include "text/KalviDspString.h"

namespace vlk {

// The fixed names of the Audio Definition Model: for each element its name, the name of a reference to it
// and the prefix of its identifiers. Made when the library is loaded, before any thread runs. The readers
// keep the axml text without parsing it, so nothing in the library reads these names.
namespace AdmVocabulary {

extern const String audioProgramme;
extern const String audioProgrammeIDRef;
extern const String audioProgrammeIDPrefix;

extern const String audioContent;
extern const String audioContentIDRef;
extern const String audioContentIDPrefix;

extern const String audioObject;
extern const String audioObjectIDRef;
extern const String audioObjectIDPrefix;

extern const String audioPackFormat;
extern const String audioPackFormatIDRef;
extern const String audioPackFormatIDPrefix;

extern const String audioChannelFormat;
extern const String audioChannelFormatIDRef;
extern const String audioChannelFormatIDPrefix;

extern const String audioTrackFormat;
extern const String audioTrackFormatIDRef;
extern const String audioTrackFormatIDPrefix;

extern const String audioStreamFormat;
extern const String audioStreamFormatIDRef;
extern const String audioStreamFormatIDPrefix;

extern const String audioBlockFormat;
extern const String audioBlockFormatIDRef;
extern const String audioBlockFormatIDPrefix;

// The one reference named with "Ref" alone.
extern const String audioTrackUID;
extern const String audioTrackUIDRef;
extern const String audioTrackUIDPrefix;

// "SN3D" and "ACN".
extern const String ambisonicNormalisation;
extern const String ambisonicChannelOrder;

} // namespace AdmVocabulary

} // namespace vlk
