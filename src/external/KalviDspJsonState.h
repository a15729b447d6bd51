#pragma once

#include "text/KalviDspString.h"

#include "ext.h"
#include "ext_dictionary.h"

namespace vlk {

// The state file: a text in the look of JSON, written by plain concatenation, nothing escaped. Main thread.

// One entry per line, "    \"key\" : value", a comma and a blank behind each but the last. False, without a
// word, when the file can't be opened; true once written, whatever the close says.
bool WriteDictionaryAsJson(t_object* object, t_dictionary* d, const char* path);
// One atom: a quoted symbol, a float with six decimals, a long. Several: "[ 1, 2, 3 ]", the last number
// followed by a blank, a last symbol not. Other atoms add nothing. value is emptied first.
void AtomsToJsonValue(long count, const t_atom* atoms, String& value);
// The host's save dialog, proposing "file.json"; the path, or empty when cancelled or failed.
String ChooseJsonFileToSave();

} // namespace vlk
