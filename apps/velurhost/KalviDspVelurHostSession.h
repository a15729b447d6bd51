#pragma once

#include "KalviDspVelurHostOptions.h"
#include "KalviDspVelurHostPresetSlot.h"
#include "KalviDspVelurHostProgressBar.h"
#include "KalviDspVelurHostRecording.h"

#include "ext_obex.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vlk::velurhost {

// The headless patcher behind a script: its objects, the current one, the recording and the preset.
// Every line runs on the main thread; the deferred queue is drained after each.
class Session
{
public:
    explicit Session(const Options& options);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Throws ScriptError.
    void execute(const std::string& line);
    // Stops audio, frees the objects and closes the recording; throws ScriptError if the file failed.
    void finish();

private:
    void executeDirective(const std::string& name, const std::string& rest);
    void sendMessage(const std::string& line);
    void sendAtoms(t_object* x, std::vector<t_atom> atoms);

    void createObject(const std::string& boxText);
    void setDsp(const std::vector<t_atom>& arguments);
    void setConnections(const std::vector<t_atom>& arguments, bool connect);
    void run(const std::string& duration);
    void wait(const std::string& duration);
    void answerDialog(const std::string& answer);
    void setDisabled(const std::vector<t_atom>& arguments);
    void registerDictionary(const std::vector<t_atom>& arguments);
    void preset(const std::vector<t_atom>& arguments);
    void state(const std::vector<t_atom>& arguments);
    void assist(const std::vector<t_atom>& arguments);
    void addAnswer(const std::vector<t_atom>& arguments);
    void answerDump(t_object* x, t_symbol* selector);

    t_object* currentObject();
    long durationInVectors(const std::string& text);

    Options options;
    std::vector<t_object*> objects;
    std::map<t_object*, std::vector<bool>> connections;
    t_object* current = nullptr;
    PresetSlot presetSlot;
    // Registered by !dict; the session is their owner.
    std::vector<t_dictionary*> dictionaries;
    // What each object's dump outlet is answered with: a selector and the message that it sends back.
    struct Answer
    {
        t_symbol* selector;
        std::vector<t_atom> message;
    };
    std::map<t_object*, std::vector<Answer>> answers;
    std::unique_ptr<Recording> recording;
    ProgressBar progressBar;
    bool finished = false;
};

} // namespace vlk::velurhost
