#include "KalviDspVelurHostSession.h"

#include "KalviDspVelurHostDuration.h"
#include "KalviDspVelurHostScriptError.h"

#include "KalviDspHostAtomParser.h"
#include "KalviDspHostAtomText.h"
#include "KalviDspHostAudioDriver.h"
#include "KalviDspHostBoxFactory.h"
#include "KalviDspHostDeferQueue.h"
#include "KalviDspHostDspGraph.h"
#include "KalviDspHostFileDialogs.h"
#include "KalviDspHostMessageDispatch.h"
#include "KalviDspHostObject.h"
#include "KalviDspHostScheduler.h"
#include "KalviDspHostSearchPath.h"
#include "KalviDspHostStandardOutput.h"

#include "ext_assist.h"
#include "ext_dictobj.h"
#include "ext_sysmem.h"

#include <algorithm>
#include <chrono>

namespace vlk::velurhost {
namespace {

std::string trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return "";
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// A dictionary that passes by name, in the dictionary syntax of the Max window: "key : value ...". It is read
// while its message is delivered, since the sender may empty it afterwards.
void printDictionary(t_symbol* name)
{
    t_dictionary* d = dictobj_findregistered_retain(name);
    if (d == nullptr)
        return;
    std::string line = "dict:";
    long numKeys = 0;
    t_symbol** keys = nullptr;
    dictionary_getkeys_ordered(d, &numKeys, &keys);
    for (long i = 0; i < numKeys; ++i) {
        long ac = 0;
        t_atom* av = nullptr;
        dictionary_getatoms(d, keys[i], &ac, &av);
        line += std::string(" ") + keys[i]->s_name + " : " + host::atomsToText(ac, av);
    }
    dictionary_freekeys(d, numKeys, keys);
    dictobj_release(d);
    host::StandardOutput::writeLine(line);
}

// What the dump outlet says, as a line of the printer; a dictionary's contents follow on a line of their own.
void printDump(t_symbol* selector, long ac, t_atom* av)
{
    std::string line = "dump: ";
    const std::string atoms = host::atomsToText(ac, av);
    if (selector == gensym("list") || selector == gensym("int") || selector == gensym("float"))
        line += atoms;
    else
        line += std::string(selector->s_name) + (ac > 0 ? " " + atoms : "");
    host::StandardOutput::writeLine(line);
    if (selector == gensym("dictionary") && ac == 1 && av[0].a_type == A_SYM)
        printDictionary(av[0].a_w.w_sym);
}

std::vector<host::Outlet*> signalOutlets(t_object* x)
{
    std::vector<host::Outlet*> result;
    for (host::Outlet* outlet : host::outletsLeftToRight(x))
        if (outlet->isSignal())
            result.push_back(outlet);
    return result;
}

long wholeNumber(const t_atom& atom, const std::string& what)
{
    if (atom.a_type != A_LONG)
        throw ScriptError(what + " must be a whole number: " + host::atomToText(atom));
    return static_cast<long>(atom.a_w.w_long);
}

std::string symbolText(const std::vector<t_atom>& arguments, std::size_t index)
{
    return index < arguments.size() && arguments[index].a_type == A_SYM ? arguments[index].a_w.w_sym->s_name
                                                                        : "";
}

} // namespace

Session::Session(const Options& givenOptions) : options(givenOptions)
{
    host::DeferQueue::setMainThread();
    host::DspGraph::instance().setSampleRate(options.sampleRate);
    host::DspGraph::instance().setVectorSize(options.vectorSize);
    host::AudioDriver::instance().setSpeed(options.speed);
    for (const std::string& folder : options.searchFolders)
        host::SearchPath::instance().addFolder(folder);
    host::SearchPath::instance().addFolder(VELURHOST_EXTERNALS_DIR);
    if (!options.outputFile.empty()) {
        recording = std::make_unique<Recording>(options.outputFile, options.sampleRate);
        host::AudioDriver::instance().setRecorder(
            [this](const float* frames, std::size_t numFrames, int numChannels) {
                recording->write(frames, numFrames, numChannels);
            });
    }
}

Session::~Session()
{
    try {
        finish();
    } catch (const ScriptError&) {
        // The failure was the caller's to hear about; a destructor has no one to tell.
    }
}

void Session::execute(const std::string& line)
{
    const std::string text = trimmed(line);
    if (text.empty() || text[0] == '#')
        return;
    if (text[0] == '!') {
        const std::size_t blank = text.find_first_of(" \t");
        executeDirective(text.substr(1, blank == std::string::npos ? std::string::npos : blank - 1),
                         blank == std::string::npos ? "" : trimmed(text.substr(blank)));
    } else {
        sendMessage(text);
    }
    // What the line set off runs before the next line: deferred calls, then the clocks due now.
    host::DeferQueue::instance().drain();
    host::Scheduler::instance().runDueClocks();
    host::DeferQueue::instance().drain();
}

void Session::executeDirective(const std::string& name, const std::string& rest)
{
    const std::vector<t_atom> arguments = host::parseAtoms(rest, true);
    if (name == "new")
        createObject(rest);
    else if (name == "dsp")
        setDsp(arguments);
    else if (name == "connect" || name == "disconnect")
        setConnections(arguments, name == "connect");
    else if (name == "run")
        run(host::atomsToText(static_cast<long>(arguments.size()), arguments.data()));
    else if (name == "wait")
        wait(host::atomsToText(static_cast<long>(arguments.size()), arguments.data()));
    else if (name == "dialog")
        answerDialog(rest);
    else if (name == "disable")
        setDisabled(arguments);
    else if (name == "dict")
        registerDictionary(arguments);
    else if (name == "preset")
        preset(arguments);
    else if (name == "state")
        state(arguments);
    else if (name == "assist")
        assist(arguments);
    else if (name == "answer")
        addAnswer(arguments);
    else
        throw ScriptError("unknown directive !" + name);
}

void Session::sendMessage(const std::string& line)
{
    std::vector<t_atom> atoms = host::parseAtoms(line, true);
    if (!atoms.empty())
        sendAtoms(currentObject(), atoms);
}

// A number alone is an int or float message; a number with more atoms a list.
void Session::sendAtoms(t_object* x, std::vector<t_atom> atoms)
{
    if (atoms[0].a_type == A_SYM) {
        host::dispatchMessage(x, atoms[0].a_w.w_sym, static_cast<long>(atoms.size() - 1), atoms.data() + 1);
        return;
    }
    t_symbol* selector =
        atoms.size() > 1 ? gensym("list") : gensym(atoms[0].a_type == A_LONG ? "int" : "float");
    host::dispatchMessage(x, selector, static_cast<long>(atoms.size()), atoms.data());
}

t_object* Session::currentObject()
{
    if (current == nullptr)
        throw ScriptError("no object yet: create one with !new");
    return current;
}

void Session::createObject(const std::string& boxText)
{
    const std::vector<t_atom> atoms = host::parseAtoms(boxText, true);
    if (atoms.empty() || atoms[0].a_type != A_SYM)
        throw ScriptError("!new needs a class name");
    host::BoxFactory::Result result = host::BoxFactory::create(atoms);
    if (!result.classFound)
        throw ScriptError(std::string("unknown class ") + atoms[0].a_w.w_sym->s_name + " (" + result.failure +
                          ")");
    if (result.object == nullptr)
        throw ScriptError("object creation failed: " + boxText);
    objects.push_back(result.object);
    current = result.object;
    t_object* dumpout = nullptr;
    object_obex_lookup(current, gensym("dumpout"), &dumpout);
    t_object* x = current;
    for (host::Outlet* outlet : host::outletsLeftToRight(x))
        if (outlet == static_cast<void*>(dumpout) || (dumpout == nullptr && !outlet->isSignal()))
            outlet->connect([this, x](t_symbol* selector, long ac, t_atom* av) {
                printDump(selector, ac, av);
                answerDump(x, selector);
            });
}

// As a patch that routes the object's dump outlet back into it: the answer follows the message at once, on
// the thread that sent it.
void Session::answerDump(t_object* x, t_symbol* selector)
{
    const auto found = answers.find(x);
    if (found == answers.end())
        return;
    for (const Answer& answer : found->second)
        if (answer.selector == selector)
            sendAtoms(x, answer.message);
}

void Session::addAnswer(const std::vector<t_atom>& arguments)
{
    if (arguments.size() < 2 || arguments[0].a_type != A_SYM)
        throw ScriptError("!answer takes a selector of the dump outlet, then a message");
    answers[currentObject()].push_back({arguments[0].a_w.w_sym, {arguments.begin() + 1, arguments.end()}});
}

void Session::setDsp(const std::vector<t_atom>& arguments)
{
    const std::string state = symbolText(arguments, 0);
    if (state == "on")
        host::DspGraph::instance().start();
    else if (state == "off")
        host::DspGraph::instance().stop();
    else
        throw ScriptError("!dsp takes on or off");
}

void Session::setConnections(const std::vector<t_atom>& arguments, bool connect)
{
    t_object* x = currentObject();
    const std::size_t count = signalOutlets(x).size();
    std::vector<bool>& connected = connections.try_emplace(x, count, true).first->second;
    if (arguments.empty())
        std::fill(connected.begin(), connected.end(), connect);
    for (const t_atom& argument : arguments) {
        const long index = wholeNumber(argument, "a signal outlet");
        if (index < 1 || index > static_cast<long>(count))
            throw ScriptError("no signal outlet " + std::to_string(index) + " (the object has " +
                              std::to_string(count) + ")");
        connected[static_cast<std::size_t>(index - 1)] = connect;
    }
    host::DspGraph::instance().setConnectedOutlets(x, connected);
}

long Session::durationInVectors(const std::string& text)
{
    std::string compact;
    for (char c : text)
        if (c != ' ' && c != '\t')
            compact += c;
    std::optional<long> vectors = parseDurationInVectors(compact, options.sampleRate, options.vectorSize);
    if (!vectors)
        throw ScriptError("bad duration \"" + text + "\" (500ms, 2s, 1024 samples, 8v)");
    return *vectors;
}

void Session::run(const std::string& duration)
{
    const long vectors = durationInVectors(duration);
    host::AudioDriver& driver = host::AudioDriver::instance();
    progressBar.begin(vectors);
    driver.render(vectors, [this, &driver] { progressBar.show(driver.getNumVectorsRendered()); });
    progressBar.end();
    if (recording && !recording->getFailure().empty())
        throw ScriptError(recording->getFailure());
}

void Session::wait(const std::string& duration)
{
    using Clock = std::chrono::steady_clock;
    const double seconds =
        static_cast<double>(durationInVectors(duration)) * options.vectorSize / options.sampleRate;
    const Clock::time_point deadline =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    for (Clock::time_point now = Clock::now(); now < deadline; now = Clock::now()) {
        host::DeferQueue::instance().drain();
        host::DeferQueue::instance().waitForWork(
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - now) +
            std::chrono::milliseconds(1));
    }
}

void Session::answerDialog(const std::string& answer)
{
    if (answer.empty())
        throw ScriptError("!dialog takes cancel or a path");
    if (answer == "cancel")
        host::FileDialogs::instance().answerWithCancel();
    else
        host::FileDialogs::instance().answerWithPath(answer);
}

void Session::setDisabled(const std::vector<t_atom>& arguments)
{
    if (arguments.size() != 1)
        throw ScriptError("!disable takes 0 or 1");
    const long value = wholeNumber(arguments[0], "!disable's switch");
    if (value != 0 && value != 1)
        throw ScriptError("!disable takes 0 or 1");
    host::DspGraph::instance().setDisabled(value == 1);
}

// A new dictionary under the name, or the one registered there emptied and filled again.
void Session::registerDictionary(const std::vector<t_atom>& arguments)
{
    if (arguments.empty() || arguments[0].a_type != A_SYM || arguments.size() % 2 != 1)
        throw ScriptError("!dict takes a name, then pairs of a key and one value");
    t_symbol* name = arguments[0].a_w.w_sym;
    t_dictionary* d = dictobj_findregistered_retain(name);
    if (d != nullptr) {
        dictionary_clear(d);
        dictobj_release(d);
    } else {
        d = dictobj_register(dictionary_new(), &name);
        dictionaries.push_back(d);
    }
    for (std::size_t i = 1; i < arguments.size(); i += 2) {
        if (arguments[i].a_type != A_SYM)
            throw ScriptError("a key of !dict must be a symbol: " + host::atomToText(arguments[i]));
        t_atom value = arguments[i + 1];
        dictionary_appendatom(d, arguments[i].a_w.w_sym, &value);
    }
}

void Session::preset(const std::vector<t_atom>& arguments)
{
    const std::string action = symbolText(arguments, 0);
    if (action == "store")
        presetSlot.store(objects);
    else if (action != "recall")
        throw ScriptError("!preset takes store or recall");
    else if (!presetSlot.recall(objects))
        throw ScriptError("!preset recall before any !preset store");
}

// What pattr does, through getvalueof and setvalueof.
void Session::state(const std::vector<t_atom>& arguments)
{
    t_object* x = currentObject();
    const std::string action = symbolText(arguments, 0);
    if (action == "get") {
        if (object_getmethod(x, gensym("getvalueof")) == nullptr)
            throw ScriptError("the object has no getvalueof");
        long ac = 0;
        t_atom* av = nullptr;
        object_method(x, gensym("getvalueof"), &ac, &av);
        host::StandardOutput::writeLine("state: " + host::atomsToText(ac, av));
        sysmem_freeptr(av);
    } else if (action == "set") {
        if (object_getmethod(x, gensym("setvalueof")) == nullptr)
            throw ScriptError("the object has no setvalueof");
        std::vector<t_atom> values(arguments.begin() + 1, arguments.end());
        object_method(x, gensym("setvalueof"), static_cast<long>(values.size()), values.data());
    } else {
        throw ScriptError("!state takes get or set");
    }
}

void Session::assist(const std::vector<t_atom>& arguments)
{
    t_object* x = currentObject();
    const std::string kind = symbolText(arguments, 0);
    if ((kind != "inlet" && kind != "outlet") || arguments.size() != 2)
        throw ScriptError("!assist takes inlet or outlet and a number from 1");
    const long index = wholeNumber(arguments[1], "!assist's number");
    if (index < 1)
        throw ScriptError("!assist counts from 1");
    char text[ASSIST_MAX_STRING_LEN + 1] = "";
    object_method(x, gensym("assist"), nullptr, kind == "inlet" ? ASSIST_INLET : ASSIST_OUTLET, index - 1,
                  text);
    host::StandardOutput::writeLine(std::string("assist: ") + text);
}

void Session::finish()
{
    if (finished)
        return;
    finished = true;
    host::DspGraph::instance().stop();
    host::AudioDriver::instance().shutdown();
    const int channels = std::max(1, host::DspGraph::instance().getNumOutputChannels());
    host::DeferQueue::instance().drain();
    for (auto it = objects.rbegin(); it != objects.rend(); ++it)
        object_free(*it);
    objects.clear();
    current = nullptr;
    for (t_dictionary* d : dictionaries)
        object_free(d);
    dictionaries.clear();
    host::DeferQueue::instance().drain();
    if (!recording)
        return;
    recording->close(channels);
    if (!recording->getFailure().empty())
        throw ScriptError(recording->getFailure());
}

} // namespace vlk::velurhost
