#include "KalviDspHostFileDialogs.h"

#include "KalviDspHostSearchPath.h"

#include "ext_path.h"
#include "ext_proto.h"
#include "ext_strings.h"

namespace vlk::host {

FileDialogs& FileDialogs::instance()
{
    static FileDialogs dialogs;
    return dialogs;
}

void FileDialogs::answerWithPath(const std::string& path)
{
    std::lock_guard<std::mutex> guard(lock);
    answers.push_back(path);
}

void FileDialogs::answerWithCancel()
{
    std::lock_guard<std::mutex> guard(lock);
    answers.push_back(std::nullopt);
}

void FileDialogs::clearAnswers()
{
    std::lock_guard<std::mutex> guard(lock);
    answers.clear();
}

std::optional<std::string> FileDialogs::takeAnswer()
{
    std::lock_guard<std::mutex> guard(lock);
    if (answers.empty())
        return std::nullopt;
    std::optional<std::string> answer = answers.front();
    answers.pop_front();
    return answer;
}

} // namespace vlk::host

namespace {

// 0 with the folder's id and the file name when the answer is a path, 1 for a cancel.
short answerDialog(char* name, short* vol, t_fourcc* type)
{
    std::optional<std::string> answer = vlk::host::FileDialogs::instance().takeAnswer();
    if (!answer || answer->empty() || name == nullptr || vol == nullptr)
        return 1;
    path_frompathname(answer->c_str(), vol, name);
    if (type != nullptr)
        *type = vlk::host::SearchPath::typeOfFile(*answer);
    return 0;
}

} // namespace

short open_dialog(char* name, short* volptr, t_fourcc* typeptr, t_fourcc* /*types*/, short /*ntypes*/)
{
    return answerDialog(name, volptr, typeptr);
}

short saveas_dialog(char* filename, short* path, short* /*binptr*/)
{
    return answerDialog(filename, path, nullptr);
}

short saveasdialog_extended(char* name, short* vol, t_fourcc* type, t_fourcc* /*typelist*/,
                            short /*numtypes*/)
{
    return answerDialog(name, vol, type);
}
