#include "KalviDspHostDictionaryRegistry.h"

#include "KalviDspHostDictionary.h"

#include "ext_dictobj.h"
#include "ext_obex.h"

namespace vlk::host {

DictionaryRegistry& DictionaryRegistry::instance()
{
    static DictionaryRegistry registry;
    return registry;
}

std::map<t_symbol*, DictionaryRegistry::Registration>::iterator
DictionaryRegistry::findByPointer(t_dictionary* d)
{
    for (auto it = registrations.begin(); it != registrations.end(); ++it)
        if (it->second.dictionary == d)
            return it;
    return registrations.end();
}

t_dictionary* DictionaryRegistry::add(t_dictionary* d, t_symbol** name)
{
    if (!isDictionary(d) || name == nullptr)
        return nullptr;
    t_dictionary* toFree = nullptr;
    t_dictionary* result = d;
    {
        std::lock_guard<std::mutex> guard(lock);
        if (auto same = findByPointer(d); same != registrations.end()) {
            same->second.holders++;
            *name = same->first;
            return d;
        }
        if (*name == nullptr)
            *name = symbol_unique();
        auto existing = registrations.find(*name);
        if (existing == registrations.end()) {
            registrations[*name] = {d, 1};
        } else {
            existing->second.holders++;
            toFree = d;
            result = existing->second.dictionary;
        }
    }
    object_free(toFree);
    return result;
}

t_max_err DictionaryRegistry::remove(t_dictionary* d)
{
    std::lock_guard<std::mutex> guard(lock);
    auto found = findByPointer(d);
    if (found == registrations.end())
        return MAX_ERR_GENERIC;
    registrations.erase(found);
    return MAX_ERR_NONE;
}

t_dictionary* DictionaryRegistry::retain(t_symbol* name)
{
    std::lock_guard<std::mutex> guard(lock);
    auto found = registrations.find(name);
    if (found == registrations.end())
        return nullptr;
    found->second.holders++;
    return found->second.dictionary;
}

t_max_err DictionaryRegistry::release(t_dictionary* d)
{
    {
        std::lock_guard<std::mutex> guard(lock);
        auto found = findByPointer(d);
        if (found == registrations.end())
            return MAX_ERR_GENERIC;
        if (--found->second.holders > 0)
            return MAX_ERR_NONE;
        registrations.erase(found);
    }
    object_free(d);
    return MAX_ERR_NONE;
}

t_symbol* DictionaryRegistry::nameOf(t_dictionary* d)
{
    std::lock_guard<std::mutex> guard(lock);
    auto found = findByPointer(d);
    return found == registrations.end() ? nullptr : found->first;
}

bool DictionaryRegistry::keepsAliveOnFree(void* x)
{
    if (!isDictionary(x))
        return false;
    std::lock_guard<std::mutex> guard(lock);
    auto found = findByPointer(static_cast<t_dictionary*>(x));
    if (found == registrations.end())
        return false;
    if (--found->second.holders > 0)
        return true;
    registrations.erase(found);
    return false;
}

} // namespace vlk::host

using vlk::host::DictionaryRegistry;

t_dictionary* dictobj_register(t_dictionary* d, t_symbol** name)
{
    return DictionaryRegistry::instance().add(d, name);
}

t_max_err dictobj_unregister(t_dictionary* d)
{
    return DictionaryRegistry::instance().remove(d);
}

t_dictionary* dictobj_findregistered_retain(t_symbol* name)
{
    return DictionaryRegistry::instance().retain(name);
}

t_dictionary* dictobj_findregistered_clone(t_symbol* name)
{
    t_dictionary* d = DictionaryRegistry::instance().retain(name);
    if (d == nullptr)
        return nullptr;
    t_dictionary* copy = dictionary_clone(d);
    DictionaryRegistry::instance().release(d);
    return copy;
}

t_max_err dictobj_release(t_dictionary* d)
{
    return DictionaryRegistry::instance().release(d);
}

t_symbol* dictobj_namefromptr(t_dictionary* d)
{
    return DictionaryRegistry::instance().nameOf(d);
}
