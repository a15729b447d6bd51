#pragma once

#include "ext.h"

namespace vlk {

// Each adds one message to the class. Those that take message arguments post the host's refusal.

void AddPostDspStateMethod(t_class* klass, method handler);
void AddAssistMethod(t_class* klass, method handler);
void AddDsp64Method(t_class* klass, method handler);
void AddGimmeMethod(t_class* klass, const char* selector, method handler);
void AddNoArgumentMethod(t_class* klass, const char* selector, method handler);
void AddIntMethod(t_class* klass, method handler);

} // namespace vlk
