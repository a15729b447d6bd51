#include "external/KalviDspSfPlayLifecycle.h"

#include "external/KalviDspDictionaryArgument.h"
#include "external/KalviDspDspObject.h"
#include "external/KalviDspDumpOutlet.h"

#include <cxxabi.h>
#include <memory>
#include <new>

namespace vlk {
namespace {

void buildPlayer(SfPlayObject* x)
{
    try {
        x->player = std::make_unique<AudioFilePlayer>(static_cast<std::uint32_t>(x->numchannels),
                                                      static_cast<std::uint64_t>(x->buffersize));
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (const Exception& exception) {
        object_error(asObject(x), "%s", exception.what());
    } catch (const std::bad_alloc& exception) {
        object_error(asObject(x), "out of memory : %s", exception.what());
    } catch (...) {
        object_error(asObject(x), "unknown exception");
    }
}

// The object is kept whatever happens: it goes on with the old rate or vector size.
void preparePlayer(SfPlayObject* x)
{
    const int vectorSize = sys_getblksize();
    try {
        x->player->prepare(static_cast<std::uint32_t>(vectorSize < 0 ? 0 : vectorSize), true, sys_getsr());
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (const Exception& exception) {
        object_bug(asObject(x), "exception : %s", exception.what());
    } catch (const std::bad_alloc& exception) {
        object_bug(asObject(x), "out of memory : %s", exception.what());
    } catch (...) {
        object_bug(asObject(x), "unknown exception");
    }
}

} // namespace

t_class* sfPlayClass = nullptr;

// A failure after the allocation returns null and leaves the object as it is, as the host's own objects do.
void* SfPlayNew(t_symbol* /*s*/, long argc, t_atom* argv)
{
    auto* x = static_cast<SfPlayObject*>(AllocateObject(sfPlayClass));
    if (x == nullptr) {
        object_error(nullptr, "couldnt allocate memory");
        return nullptr;
    }
    std::construct_at(&x->player);
    std::construct_at(&x->listener);
    x->box = gensym("#B")->s_thing;
    // The ring's size and the outlets depend on these two: they are read before anything else.
    if (!ReadAttributesFromDictionaryArgument(asObject(x), argc, argv, 2, "numchannels", "buffersize"))
        return nullptr;
    buildPlayer(x);
    if (x->player == nullptr) {
        object_error(asObject(x), "couldnt create object");
        return nullptr;
    }
    if (!ProcessDictionaryArgument(asObject(x), argc, argv, true))
        return nullptr;
    CreateDumpOutlet(asObject(x));
    preparePlayer(x);
    SetupDspObject(&x->ob, x->player->getNumInlets(), x->player->getNumOutlets(), true);
    x->listener = std::make_unique<SfPlayListener>(x);
    x->player->addListener(x->listener.get());
    return x;
}

// The listener goes first: its destructor still needs the player.
void SfPlayFree(SfPlayObject* x)
{
    FreeDspObject(&x->ob);
    x->listener.reset();
    x->player.reset();
    std::destroy_at(&x->listener);
    std::destroy_at(&x->player);
}

} // namespace vlk
