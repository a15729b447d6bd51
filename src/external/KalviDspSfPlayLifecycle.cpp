#include "external/KalviDspSfPlayLifecycle.h"

#include "external/KalviDspDictionaryArgument.h"
#include "external/KalviDspDspObject.h"
#include "external/KalviDspDumpOutlet.h"
#include "external/KalviDspHostBoundary.h"

#include <memory>

namespace vlk {
namespace {

void buildPlayer(SfPlayObject* x)
{
    CallAtHostBoundary(asObject(x), errorWords, [x] {
        x->player = std::make_unique<AudioFilePlayer>(static_cast<std::uint32_t>(x->numchannels),
                                                      static_cast<std::uint64_t>(x->buffersize));
    });
}

// The object is kept whatever happens: it goes on with the old rate or vector size.
void preparePlayer(SfPlayObject* x)
{
    const int vectorSize = sys_getblksize();
    CallAtHostBoundary(asObject(x), bugWords, [x, vectorSize] {
        x->player->prepare(static_cast<std::uint32_t>(vectorSize < 0 ? 0 : vectorSize), true, sys_getsr());
    });
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
