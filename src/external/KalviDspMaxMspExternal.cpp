#include "external/KalviDspMaxMspExternal.h"

#include "external/KalviDspDocumentationTexts.h"
#include "external/KalviDspMap.h"
#include "external/KalviDspMaxMspExternalDocumentation.h"
#include "external/KalviDspSfplayTilda.h"
#include "threads/KalviDspLog.h"

#include <iostream>

namespace Velur {
namespace {

Map<MaxMspExternal::Type>& externalMap()
{
    static Map<MaxMspExternal::Type> map(true);
    return map;
}

Map<vlk::String>& methodMap()
{
    static Map<vlk::String> map(true);
    return map;
}

void buildMethodMap()
{
    Map<vlk::String>& map = methodMap();
    if (!map.isEmpty())
        return;
    map["loudspeakers"] = Texts::loudspeakersMessage;
    map["loudspeaker"] = Texts::loudspeakerMessage;
    map["speakers"] = Texts::speakersMessage;
    map["open"] = Texts::openMessage;
    map["wclose"] = Texts::wcloseMessage;
    map["info"] = Texts::infoMessage;
    map["/info"] = Texts::infoMessage;
    map["clear"] = Texts::clearMessage;
}

// The documentation object of a known name, or null.
std::unique_ptr<MaxMspExternalDocumentation> documentationOf(const vlk::String& name)
{
    MaxMspExternal::BuildExternalMap();
    if (!externalMap().ContainsKey(name))
        return nullptr;
    const MaxMspExternal::Type type = MaxMspExternal::GetExternalType(name);
    return MaxMspExternal::CreateDocumentation(&type);
}

} // namespace

void MaxMspExternal::BuildExternalMap()
{
    Map<Type>& map = externalMap();
    if (!map.isEmpty())
        return;
    map["velur.sfplay~"] = Type::velurSfplayTilda;
}

MaxMspExternal::Type MaxMspExternal::GetExternalType(const vlk::String& name)
{
    BuildExternalMap();
    const Map<Type>& map = externalMap();
    if (map.ContainsKey(name))
        return map.getValue(map.IndexOf(name));
    vlk::logMessage("unknwon external : " + name);
    return Type{0};
}

std::unique_ptr<MaxMspExternalDocumentation> MaxMspExternal::CreateDocumentation(const Type* type)
{
    if (type == nullptr || static_cast<std::uint32_t>(*type) > lastType)
        return nullptr;
    switch (*type) {
    case Type::velurSfplayTilda:
        return std::make_unique<External::SfplayTilda>();
    }
    return nullptr;
}

vlk::String MaxMspExternal::GetExternalDescription(const vlk::String& name)
{
    const std::unique_ptr<MaxMspExternalDocumentation> documentation = documentationOf(name);
    return documentation == nullptr ? vlk::String() : documentation->GetDescription();
}

vlk::String MaxMspExternal::GetExternalDigest(const vlk::String& name)
{
    const std::unique_ptr<MaxMspExternalDocumentation> documentation = documentationOf(name);
    return documentation == nullptr ? vlk::String() : documentation->GetDigest();
}

vlk::String MaxMspExternal::GetExternalSeeAlso(const vlk::String& name)
{
    const std::unique_ptr<MaxMspExternalDocumentation> documentation = documentationOf(name);
    return documentation == nullptr ? vlk::String() : documentation->GetSeeAlso();
}

vlk::String MaxMspExternal::GetMethodDocumentation(const vlk::String& name)
{
    buildMethodMap();
    const Map<vlk::String>& map = methodMap();
    if (map.ContainsKey(name))
        return map.getValue(map.IndexOf(name));
    std::cerr << "unknwon method : " << name << std::endl;
    return vlk::String();
}

} // namespace Velur
