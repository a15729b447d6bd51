#include "external/KalviDspMaxXmlDocumentation.h"

#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspMaxAttribute.h"
#include "text/KalviDspStringHelper.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>

namespace vlk {
namespace {

constexpr const char* author = "velur";

void writeLine(std::ostream& out, int tabs, const String& text)
{
    out << String(static_cast<std::size_t>(tabs), '\t') << text << '\n';
}

void writeEmptyLine(std::ostream& out)
{
    out << '\n';
}

String environmentValue(const char* name)
{
    const char* value = std::getenv(name);
    return value == nullptr ? String() : String(value);
}

// home, then HOME; then HOMESHARE or HOMEDRIVE, followed by HOMEPATH. With none of them set the page goes
// to the current folder rather than to the root of the file system.
String homeFolder()
{
    for (const char* name : {"home", "HOME"})
        if (std::getenv(name) != nullptr)
            return environmentValue(name);
    for (const char* name : {"HOMESHARE", "HOMEDRIVE"})
        if (std::getenv(name) != nullptr)
            return environmentValue(name) + environmentValue("HOMEPATH");
    return ".";
}

struct TypeName
{
    const char* type;
    const char* pageName;
};

// float32 is not among them: such an attribute is declared "unknown" on the page.
constexpr TypeName pageTypeNames[] = {
    {"long", "int"}, {"float", "float"}, {"float64", "float"}, {"symbol", "symbol"}};

const char* pageTypeName(t_symbol* type)
{
    for (const TypeName& entry : pageTypeNames)
        if (type != nullptr && String::equals(type->s_name, entry.type))
            return entry.pageName;
    return "unknown";
}

// name="..." get="..." set="..." type="...", from the attribute object's flags and type.
String accessText(const MaxAttribute& attribute)
{
    const long flags = attribute.GetFlags();
    return String("name=\"") + attribute.GetName()->s_name + "\" get=\"" +
           ((flags & ATTR_GET_OPAQUE_USER) != 0 ? "0" : "1") + "\" set=\"" +
           ((flags & ATTR_SET_OPAQUE_USER) != 0 ? "0" : "1") + "\" type=\"" +
           pageTypeName(attribute.GetType()) + "\"";
}

String trimmedAtEnd(String text)
{
    text.trimEnd();
    return text;
}

// The choices of enumvals, each with a blank behind it; the diagnostic on standard error has stayed in.
String enumValue(const MaxAttribute& attribute)
{
    Vector<String> choices;
    attribute.GetEnumChoices(choices, "");
    String value;
    for (const String& choice : choices)
        value += choice + " ";
    value = trimmedAtEnd(value);
    std::fprintf(stderr, "value = |%s|\n", value.c_str());
    return value;
}

// The sub-attributes are the attribute object's own attributes, listed unfiltered.
void writeSubAttributes(std::ostream& out, const MaxAttribute& attribute)
{
    t_object* attributeObject = attribute.GetAttributeObject();
    Vector<String> names;
    GetAttributeNames(attributeObject, names, AttributeSortMode::Alphabetical);
    for (const String& name : names) {
        if (name == "description" || name == "digest")
            continue;
        const MaxAttribute subAttribute(attributeObject, name.c_str());
        if (subAttribute.IsNull())
            continue;
        const String value = subAttribute.GetName() == commonSymbols->enumvals
                                 ? enumValue(attribute)
                                 : trimmedAtEnd(attribute.GetValueOf(subAttribute.GetName(), ""));
        writeLine(out, 4, "<attribute " + accessText(subAttribute) + " value=\"" + value + "\" />");
    }
}

// An entry's <digest> and <description> at three tabs; no digest leaves the pair of tags empty.
void writeEntryTexts(std::ostream& out, const std::optional<String>& digest, const String& description,
                     int descriptionTabs)
{
    writeLine(out, 3, "<digest>");
    if (digest)
        writeLine(out, 4, *digest);
    writeLine(out, 3, "</digest>");
    writeLine(out, 3, "<description>");
    writeLine(out, descriptionTabs, description);
    writeLine(out, 3, "</description>");
}

void writeNamedList(std::ostream& out, const char* comment, const char* list, const char* item,
                    const Vector<String>& names)
{
    writeLine(out, 1, String("<!--") + comment + "-->");
    writeLine(out, 1, String("<") + list + ">");
    for (std::size_t i = 0; i < names.size(); ++i) {
        writeLine(out, 2,
                  String("<") + item + " id=\"" + toString(static_cast<unsigned long>(i)) + "\" name=\"" +
                      names[i] + "\">");
        writeEntryTexts(out, std::nullopt, names[i], 4);
        writeLine(out, 2, String("</") + item + ">");
    }
    writeLine(out, 1, String("</") + list + ">");
    writeEmptyLine(out);
}

void writeEmptyList(std::ostream& out, const char* comment, const char* list)
{
    writeLine(out, 1, String("<!--") + comment + "-->");
    writeLine(out, 1, String("<") + list + ">");
    writeLine(out, 1, String("</") + list + ">");
    writeEmptyLine(out);
}

} // namespace

void MaxXmlDocumentation::GenerateXmlDocumentation(t_object* documented, const String& stylesheet,
                                                   const AttributeSortMode* attributeSortMode,
                                                   const String& copyrightLine)
{
    InitCommonSymbols();
    object = documented;
    stylesheetPath = stylesheet;
    if (attributeSortMode != nullptr)
        sortMode = *attributeSortMode;
    copyright = copyrightLine;
    const String className = object_classname(object)->s_name;
    const String path = homeFolder() + "/" + className + ".maxref.xml";

    std::filebuf file;
    file.open(path, std::ios::out | std::ios::trunc);
    std::ostream out(&file);
    // Looked at before anything is written, on a stream that has just been set up on a buffer: it is good
    // whether the file opened or not, and a file that did not open shows only in the missing page.
    if (!out) {
        object_error(object, "could not create %s", path.c_str());
        return;
    }
    WriteHeader(out);
    writeLine(out, 0, "<c74object name=\"" + className + "\">");
    WriteDigestAndDescription(out);
    WriteMetadata(out);
    WriteInlets(out);
    WriteOutlets(out);
    WriteArguments(out);
    WriteAttributes(out);
    WriteMessages(out);
    WriteSeeAlso(out);
    WriteMenuItems(out);
    WriteExamples(out);
    writeEmptyLine(out);
    writeLine(out, 0, "</c74object>");
    writeEmptyLine(out);
    out.flush();
    file.close();
    object_post(object, "documentation generated in %s", path.c_str());
}

void MaxXmlDocumentation::WriteHeader(std::ostream& out) const
{
    writeLine(out, 0, "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"yes\"?>");
    writeEmptyLine(out);
    writeLine(out, 0, "<?xml-stylesheet href=\"" + stylesheetPath + "\" type=\"text/xsl\"?>");
    writeEmptyLine(out);
}

void MaxXmlDocumentation::WriteDigestAndDescription(std::ostream& out) const
{
    String description = MaxAttribute(object, "classdescription").GetLabel("");
    const String className = object_classname(object)->s_name;
    description.replace(className, "<o>" + className + "</o>");
    writeLine(out, 1, "<digest>");
    writeLine(out, 2, MaxAttribute(object, "classdigest").GetLabel(""));
    writeLine(out, 1, "</digest>");
    writeLine(out, 1, "<description>");
    writeLine(out, 2, description);
    writeLine(out, 1, "</description>");
    writeEmptyLine(out);
}

void MaxXmlDocumentation::WriteMetadata(std::ostream& out) const
{
    writeLine(out, 1, "<!--METADATA-->");
    writeLine(out, 1, "<metadatalist>");
    const String entries[][2] = {
        {"author", author}, {"copyright", copyright}, {"version", GetExternalVersion()}};
    for (const auto& [name, value] : entries) {
        writeLine(out, 2, "<metadata name=\"" + name + "\">");
        writeLine(out, 2, value);
        writeLine(out, 2, "</metadata>");
    }
    writeLine(out, 1, "</metadatalist>");
    writeEmptyLine(out);
}

void MaxXmlDocumentation::WriteInlets(std::ostream& out) const
{
    Vector<String> names;
    GetObjectListOfInletsDescription(names);
    writeNamedList(out, "INLETS", "inletlist", "inlet", names);
}

void MaxXmlDocumentation::WriteOutlets(std::ostream& out) const
{
    Vector<String> names;
    GetObjectListOfOutletsDescription(names);
    writeNamedList(out, "OUTLETS", "outletlist", "outlet", names);
}

// The description stands at three tabs here, against four in the other lists.
void MaxXmlDocumentation::WriteArguments(std::ostream& out) const
{
    Vector<String> names, descriptions, types;
    GetObjectListOfArguments(names, descriptions, types);
    writeLine(out, 1, "<!--ARGUMENTS-->");
    writeLine(out, 1, "<objarglist>");
    for (std::size_t i = 0; i < names.size(); ++i) {
        writeLine(out, 2, "<objarg name=\"" + names[i] + "\" type=\"" + types[i] + "\" optional=\"1\"> ");
        writeEntryTexts(out, std::nullopt, descriptions[i], 3);
        writeLine(out, 2, "</objarg>");
    }
    writeLine(out, 1, "</objarglist>");
    writeEmptyLine(out);
}

void MaxXmlDocumentation::WriteAttributes(std::ostream& out) const
{
    Vector<String> names;
    GetAttributeNames(object, names, sortMode);
    RemoveNonStateAttributes(object, names);
    writeLine(out, 1, "<!--ATTRIBUTES-->");
    writeLine(out, 1, "<attributelist>");
    for (const String& name : names)
        writeAttribute(out, name);
    writeLine(out, 1, "</attributelist>");
    writeEmptyLine(out);
}

// size is 1 whatever the attribute holds.
void MaxXmlDocumentation::writeAttribute(std::ostream& out, const String& name) const
{
    const MaxAttribute attribute(object, name.c_str());
    const String label = attribute.GetLabel("");
    writeLine(out, 2, "<attribute " + accessText(attribute) + " size=\"1\">");
    writeEntryTexts(out, label, attribute.GetValueOf(commonSymbols->description, label.c_str()), 4);
    writeLine(out, 3, "<attributelist>");
    writeSubAttributes(out, attribute);
    writeLine(out, 3, "</attributelist>");
    writeLine(out, 2, "</attribute>");
    writeEmptyLine(out);
}

// Every argument is written with id 0.
void MaxXmlDocumentation::WriteMessages(std::ostream& out) const
{
    Vector<MethodDescription> methods;
    getObjectMethodsDescription(methods);
    writeLine(out, 1, "<!--MESSAGES-->");
    writeLine(out, 1, "<methodlist>");
    for (const MethodDescription& method : methods) {
        writeLine(out, 2, "<method name=\"" + method.name + "\">");
        writeLine(out, 3, "<arglist>");
        for (std::size_t i = 1; i < method.argumentNames.size(); ++i)
            writeLine(out, 4,
                      "<arg name=\"" + method.argumentNames[i] + "\" type=\"" + method.argumentTypes[i] +
                          "\" optional=\"0\" id=\"0\" />");
        writeLine(out, 3, "</arglist>");
        writeEntryTexts(out, std::nullopt, method.description, 4);
        writeLine(out, 2, "</method>");
    }
    writeLine(out, 1, "</methodlist>");
    writeEmptyLine(out);
}

void MaxXmlDocumentation::WriteSeeAlso(std::ostream& out) const
{
    Vector<String> names;
    GetObjectSeeAlso(names);
    writeLine(out, 1, "<!--SEEALSO-->");
    writeLine(out, 1, "<seealsolist>");
    for (const String& name : names)
        writeLine(out, 2, "<seealso name=\"" + name + "\" />");
    writeLine(out, 1, "</seealsolist>");
    writeEmptyLine(out);
}

void MaxXmlDocumentation::WriteMenuItems(std::ostream& out) const
{
    writeEmptyList(out, "MENU ITEMS", "menuitemlist");
}

void MaxXmlDocumentation::WriteExamples(std::ostream& out) const
{
    writeEmptyList(out, "EXAMPLE", "examplelist");
}

} // namespace vlk
