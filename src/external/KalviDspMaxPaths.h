#pragma once

#include "text/KalviDspString.h"

namespace vlk {

// Paths between Max's form, "volume:/folder/file", and the file system's.

// A path that starts with '/' stands as it is. Otherwise the volume becomes "/Volumes/volume" and the text
// is read as Mac Roman and given in UTF-8; empty when that does not fit 4096 bytes.
String MaxPathToPosixPath(const String& path);
// The host's open dialog for AIFF and WAVE files; empty when cancelled or failed. Main thread.
String ChooseSoundFileToOpen();
// A name is looked up in the search path, a path is taken when it exists; empty otherwise.
String LocateFileInSearchPath(const String& nameOrPath);

} // namespace vlk
