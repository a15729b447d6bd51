#pragma once

#include "external/KalviDspAttributeNames.h"
#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

#include "ext.h"

#include <ostream>

namespace vlk {

// A message as the class documents it. Entry 0 of the argument lists stands for the description and stays
// empty: real arguments start at index 1.
struct MethodDescription
{
    String name;
    String description;
    Vector<String> argumentNames;
    Vector<String> argumentTypes;
};

// The reference page that an object writes about itself, "{class}.maxref.xml" in the home folder, from what
// its class keeps: the labels of the documentation attributes, the methods dictionary of classdescription,
// and each attribute's sub-attributes. Nothing is escaped; the texts' own <m> and <br/> stay markup. Made on
// the stack for one page, on the thread of the message.
class MaxXmlDocumentation
{
public:
    // Writes the page and says where. A file that can't be opened is not reported: the writes fail silently.
    void GenerateXmlDocumentation(t_object* documented, const String& stylesheet,
                                  const AttributeSortMode* attributeSortMode, const String& copyrightLine);

    // The label of externalversion, or "unknown version".
    String GetExternalVersion() const;
    void GetObjectListOfInletsDescription(Vector<String>& names) const;
    void GetObjectListOfOutletsDescription(Vector<String>& names) const;
    void GetObjectListOfArguments(Vector<String>& names, Vector<String>& descriptions,
                                  Vector<String>& types) const;
    void getObjectMethodsDescription(Vector<MethodDescription>& methods) const;
    // The label of classseealso without blanks, split at each comma.
    void GetObjectSeeAlso(Vector<String>& names) const;

private:
    void WriteHeader(std::ostream& out) const;
    void WriteDigestAndDescription(std::ostream& out) const;
    void WriteMetadata(std::ostream& out) const;
    void WriteInlets(std::ostream& out) const;
    void WriteOutlets(std::ostream& out) const;
    void WriteArguments(std::ostream& out) const;
    void WriteAttributes(std::ostream& out) const;
    void WriteMessages(std::ostream& out) const;
    void WriteSeeAlso(std::ostream& out) const;
    void WriteMenuItems(std::ostream& out) const;
    void WriteExamples(std::ostream& out) const;

    void writeAttribute(std::ostream& out, const String& name) const;
    // The class's classdescription attribute, or null after a post naming the asking operation.
    t_object* findClassDescription(const char* operation) const;

    t_object* object = nullptr;
    AttributeSortMode sortMode = AttributeSortMode::Alphabetical;
    String stylesheetPath = "./_c74_ref.xsl";
    String copyright;
};

} // namespace vlk
