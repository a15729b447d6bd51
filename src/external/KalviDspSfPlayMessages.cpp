#include "external/KalviDspSfPlayMessages.h"

#include "external/KalviDspAtomsToText.h"
#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspDumpOutlet.h"
#include "external/KalviDspMaxPaths.h"
#include "external/KalviDspOutletSendFormatted.h"

#include <cstdint>
#include <cxxabi.h>

namespace vlk {
namespace {

bool isNumber(const t_atom& atom)
{
    return atom.a_type == A_LONG || atom.a_type == A_FLOAT;
}

// Narrowed before anything else, a long by a plain conversion.
float toMilliseconds(const t_atom& atom)
{
    return atom.a_type == A_LONG ? static_cast<float>(atom.a_w.w_long) : static_cast<float>(atom.a_w.w_float);
}

void sendLength(SfPlayObject* x)
{
    OutletSendFormatted(GetDumpOutlet(asObject(x)), commonSymbols->length, "f", 1,
                        static_cast<double>(x->player->getLengthInMs()));
}

void sendNumChannels(SfPlayObject* x)
{
    OutletSendFormatted(GetDumpOutlet(asObject(x)), commonSymbols->numchannels, "l", 1,
                        static_cast<std::int64_t>(x->player->getNumChannelsInFile()));
}

void sendFileName(SfPlayObject* x)
{
    OutletSendFormatted(GetDumpOutlet(asObject(x)), commonSymbols->filename, "s", 1,
                        gensym(x->player->getFileName().c_str()));
}

// The path of the file to open; empty when there is nothing to do, after an error line where one is due.
String choosePath(SfPlayObject* x, long argc, t_atom* argv)
{
    if (argc <= 0)
        return ChooseSoundFileToOpen();
    t_symbol* name = atom_getsym(argv);
    if (name == commonSymbols->none)
        return String();
    String path = LocateFileInSearchPath(name->s_name);
    if (path.empty())
        object_error(asObject(x), "Couldnt locate file :  %s", name->s_name);
    return path;
}

// Main thread.
void openDeferred(SfPlayObject* x, t_symbol* /*s*/, long argc, t_atom* argv)
{
    const String path = choosePath(x, argc, argv);
    if (path.empty())
        return;
    try {
        x->player->open(File(path));
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (const Exception& exception) {
        object_error(asObject(x), "%s", exception.what());
        return;
    } catch (...) {
        object_error(asObject(x), "Couldnt locate file :  %s", path.c_str());
        return;
    }
    sendLength(x);
    sendNumChannels(x);
    sendFileName(x);
    object_notify(x->box, maxCommonSymbols->s_modified, nullptr);
}

} // namespace

void SfPlayOpen(SfPlayObject* x, t_symbol* s, long argc, t_atom* argv)
{
    defer_medium(x, reinterpret_cast<method>(openDeferred), s, static_cast<short>(argc), argv);
}

void SfPlayInt(SfPlayObject* x, t_atom_long value)
{
    if (value == 1)
        x->player->rewind();
    else
        x->player->pause();
}

// Surplus atoms do not matter: seek 1000 2000 3000 is a seek of a region.
void SfPlaySeek(SfPlayObject* x, t_symbol* /*s*/, long argc, t_atom* argv)
{
    if (argc >= 2 && isNumber(argv[0]) && isNumber(argv[1]))
        x->player->seek(toMilliseconds(argv[0]), toMilliseconds(argv[1]));
    else if (argc >= 1 && isNumber(argv[0]))
        x->player->seek(toMilliseconds(argv[0]));
    else
        ReportInvalidMessage(asObject(x), argc, argv, "invalid message : seek");
}

void SfPlayResume(SfPlayObject* x)
{
    x->player->resume();
}

void SfPlayPause(SfPlayObject* x)
{
    x->player->pause();
}

void SfPlayInfo(SfPlayObject* x)
{
    Vector<String> lines;
    x->player->getInfo(lines);
    for (const String& line : lines)
        object_post(asObject(x), "%s", line.c_str());
}

void SfPlayGetLength(SfPlayObject* x)
{
    sendLength(x);
}

void SfPlayGetNumChannels(SfPlayObject* x)
{
    sendNumChannels(x);
}

void SfPlayGetFileName(SfPlayObject* x)
{
    sendFileName(x);
}

} // namespace vlk
