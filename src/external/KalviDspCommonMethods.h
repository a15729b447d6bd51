#pragma once

#include "ext.h"

namespace vlk {

// Registration of the service messages that every object of the package answers, each with the
// documentation its reference page shows. Class loading thread.

// generatexml, version, postattributes, getvalueof, setvalueof, preset, recallpreset, exportdict, dumpdict
// and dictionary, in that order; the last is documented under readdict, which no method answers.
void AddCommonMethods(t_class* klass);
void AddPostDspStatusMethod(t_class* klass);
void AddDumpMethod(t_class* klass);

} // namespace vlk
