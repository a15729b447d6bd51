#include "external/KalviDspCommonMethods.h"

#include "external/KalviDspAttributeState.h"
#include "external/KalviDspCommonMessages.h"
#include "external/KalviDspMethodDocumentation.h"
#include "external/KalviDspMethodRegistration.h"

namespace vlk {
namespace {

method asMethod(auto function)
{
    return reinterpret_cast<method>(function);
}

void addAttributeNameArgument(t_class* klass, const char* selector)
{
    AddMethodArgumentDocumentation(klass, selector, "name of the attribute", "symbol");
}

} // namespace

void AddCommonMethods(t_class* klass)
{
    class_addmethod(klass, asMethod(kalvimax_generatexml), "generatexml", 0);
    AddMethodDocumentation(klass, "generatexml", "this method is for service use only.");
    class_addmethod(klass, asMethod(kalvimax_version), "version", 0);
    AddMethodDocumentation(klass, "version", "post version of the object to the Max window.");
    AddGimmeMethod(klass, "postattributes", asMethod(kalvimax_postattributes));
    AddMethodDocumentation(
        klass, "postattributes",
        "post the value of an attribute to Max window. <br/> if no attribute name is specified "
        "this post the value of all attributes.");
    addAttributeNameArgument(klass, "postattributes");
    class_addmethod(klass, asMethod(kalvimax_getvalueof), "getvalueof", A_CANT, 0);
    class_addmethod(klass, asMethod(kalvimax_setvalueof), "setvalueof", A_CANT, 0);
    class_addmethod(klass, asMethod(kalvimax_preset), "preset", 0);
    AddGimmeMethod(klass, "recallpreset", asMethod(kalvimax_recallpreset));
    AddMethodDocumentation(
        klass, "recallpreset",
        "this method is provided for compatibility with the Max/MSP <m>preset</m> object. This "
        "method is called by the preset object when recalling a preset. This should not be "
        "used in any other situation.");
    AddGimmeMethod(klass, "exportdict", asMethod(kalvimax_exportdict));
    AddMethodDocumentation(klass, "exportdict", "export current state as a JSON file.");
    AddGimmeMethod(klass, "dumpdict", asMethod(kalvimax_dumpdict));
    AddMethodDocumentation(klass, "dumpdict",
                           "outputs current state as a dictionary (through the dump outlet).");
    class_addmethod(klass, asMethod(kalvimax_dictionary), "dictionary", A_SYM, 0);
    AddMethodDocumentation(klass, "readdict", "receives and parses a dictionary (of attributes).");
}

void AddPostDspStatusMethod(t_class* klass)
{
    class_addmethod(klass, asMethod(kalvimax_postdspstatus), "postdspstatus", 0);
    AddMethodDocumentation(klass, "postdspstatus",
                           "post information about the dsp status in the Max window.");
}

void AddDumpMethod(t_class* klass)
{
    AddGimmeMethod(klass, "dump", asMethod(kalvimax_dump));
    AddMethodDocumentation(
        klass, "dump",
        "dump value of an attribute. <br/> if no attribute-name is specified this will dump "
        "the value of all attributes.");
    addAttributeNameArgument(klass, "dump");
}

} // namespace vlk
