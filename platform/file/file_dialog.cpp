#include "platform/file/file_dialog.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QString>
#include <QStringList>
#include <cstring>
#include <filesystem>

#include "platform/base/from_qt.h"
#include "platform/base/scripted_answers.h"
#include "platform/base/to_qt.h"
#include "platform/file/paths.h"

namespace {

// A queued answer is the list of paths chosen; an empty list is a cancel.
ScriptedAnswers<std::vector<std::string>, FileDialogRequest>& Script()
{
    static ScriptedAnswers<std::vector<std::string>, FileDialogRequest> script;
    return script;
}

// "BMP Files (*.bmp)|*.bmp|All Files (*.*)|*.*|" -> "BMP Files (*.bmp)", "All Files (*)".
// A description that already ends in its own "(...)" loses it, so patterns are not shown twice.
// "*.*" becomes "*": here a file need not have an extension to be shown.
std::vector<std::string> ParseNameFilters(const char* filter)
{
    std::vector<std::string> parts;
    if (filter) {
        std::string text(filter);
        size_t start = 0;
        for (size_t bar = text.find('|'); bar != std::string::npos; bar = text.find('|', start)) {
            parts.push_back(text.substr(start, bar - start));
            start = bar + 1;
        }
    }
    std::vector<std::string> nameFilters;
    for (size_t i = 0; i + 1 < parts.size(); i += 2) {
        std::string description = parts[i];
        const std::string& patternText = parts[i + 1];
        if (description.empty())
            break;  // the closing "||"
        if (patternText.empty())
            continue;
        std::string patterns;
        size_t start = 0;
        while (start <= patternText.size()) {
            size_t end = patternText.find(';', start);
            if (end == std::string::npos)
                end = patternText.size();
            std::string pattern = patternText.substr(start, end - start);
            if (pattern == "*.*")
                pattern = "*";
            if (!pattern.empty())
                patterns += (patterns.empty() ? "" : " ") + pattern;
            start = end + 1;
        }
        size_t open = description.rfind('(');
        if (!description.empty() && description.back() == ')' && open != std::string::npos)
            description.erase(open);
        while (!description.empty() && description.back() == ' ')
            description.pop_back();
        nameFilters.push_back(description + " (" + patterns + ")");
    }
    return nameFilters;
}

// ".plx" or "*.plx" -> "plx".
std::string SuffixOf(const char* defaultExt)
{
    std::string suffix = defaultExt ? defaultExt : "";
    size_t dot = suffix.rfind('.');
    if (dot != std::string::npos)
        suffix.erase(0, dot + 1);
    return suffix == "*" ? std::string() : suffix;
}

// The name after the last separator; names made on other systems use ":" or "\".
std::string LeafName(const char* name)
{
    std::string text(name, strnlen(name, kFSpecNameSize - 1));
    size_t separator = text.find_last_of(":\\/");
    return separator == std::string::npos ? text : text.substr(separator + 1);
}

bool IsFolder(const std::string& path)
{
    std::error_code error;
    return !path.empty() && std::filesystem::is_directory(path, error);
}

// The folder `spec` names, or the folder of the file it names; empty when there is none.
std::string FolderOf(const FSpec* spec)
{
    if (!spec)
        return std::string();
    NativeFileRef ref;
    FSpec full;
    CopyToMacFSSpec(&ref, spec);
    if (!CopyFromMacFSSpec(&full, &ref) || !full.name[0])
        return std::string();
    std::string path(full.name);
    if (path.back() != '/') {
        size_t slash = path.rfind('/');
        path = slash == 0 ? "/" : path.substr(0, slash);
    }
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return IsFolder(path) ? path : std::string();
}

// `path` as a path-form record; false when it cannot be named in 255 characters. A path whose
// folder cannot be looked up is still what was chosen: it is handed back as written, made absolute.
bool ToPathForm(const std::string& path, FSpec* out)
{
    NativeFileRef ref;
    GetFSSpecFromPath(path.c_str(), &ref);
    if (CopyFromMacFSSpec(out, &ref) && out->name[0] != 0)
        return true;
    std::error_code error;
    std::string full = std::filesystem::absolute(path, error).lexically_normal().string();
    if (error || full.empty() || full.size() > size_t(kMaxPathLength))
        return false;
    std::strcpy(out->name, full.c_str());
    return true;
}

// Shows the dialog the request describes and collects the chosen paths. False on cancel.
bool ShowDialog(const FileDialogRequest& request, std::vector<std::string>* chosen)
{
    QFileDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(request.save ? QStringLiteral("Save As") : QStringLiteral("Open"));
    dialog.setAcceptMode(request.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    if (request.save)
        dialog.setFileMode(QFileDialog::AnyFile);
    else
        dialog.setFileMode(request.multiple ? QFileDialog::ExistingFiles
                                            : QFileDialog::ExistingFile);
    QStringList nameFilters;
    for (const std::string& nameFilter : request.nameFilters)
        nameFilters << ToQString(nameFilter);
    if (!nameFilters.isEmpty())
        dialog.setNameFilters(nameFilters);
    if (!request.folder.empty())
        dialog.setDirectory(ToQPath(request.folder));
    if (request.save) {
        if (!request.defaultSuffix.empty())
            dialog.setDefaultSuffix(ToQString(request.defaultSuffix));
        dialog.selectFile(ToQPath(request.proposedName));
    }
    if (dialog.exec() != QDialog::Accepted)
        return false;
    for (const QString& file : dialog.selectedFiles())
        chosen->push_back(FromQPath(file));
    return !chosen->empty();
}

// The answer to a request: the oldest scripted one, else the real dialog when Qt's widgets are
// running, else a cancel, so nothing ever waits on a dialog nobody can see.
bool AskUser(const FileDialogRequest& request, std::vector<std::string>* chosen)
{
    Script().Record(request);
    if (Script().Take(chosen))
        return !chosen->empty();
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return false;
    return ShowDialog(request, chosen);
}

}  // namespace

bool OpenFileDialog([[maybe_unused]] CPWnd* owner, FSpec* file, const char* filter,
                    [[maybe_unused]] const char* defaultExt, const FSpec* folder, bool multiple,
                    int capacity)
{
    if (!file)
        return false;
    int room = multiple ? capacity : 1;
    if (room < 1)
        return false;
    FileDialogRequest request;
    request.multiple = multiple;
    request.capacity = room;
    request.folder = FolderOf(folder);
    request.nameFilters = ParseNameFilters(filter);

    std::vector<std::string> chosen;
    if (!AskUser(request, &chosen))
        return false;
    std::vector<FSpec> records;
    for (const std::string& path : chosen) {
        if (int(records.size()) == room)
            break;
        FSpec record;
        if (ToPathForm(path, &record))
            records.push_back(record);
    }
    if (records.empty())
        return false;
    std::memcpy(file, records.data(), records.size() * sizeof(FSpec));
    return true;
}

bool SaveFileDialog([[maybe_unused]] CPWnd* owner, FSpec* file, const char* filter,
                    const char* defaultExt, const FSpec* folder)
{
    if (!file)
        return false;
    FileDialogRequest request;
    request.save = true;
    request.capacity = 1;
    request.proposedName = LeafName(file->name);
    if (request.proposedName.empty())
        request.proposedName = "Untitled";
    // A name that carries its folder opens the dialog there; a bare name uses `folder`.
    std::string name(file->name, strnlen(file->name, kFSpecNameSize - 1));
    bool named = !(file->vRefNum == 0 && file->parID == 0) &&
                 (!IsPathForm(*file) || name.find('/') != std::string::npos);
    request.folder = named ? FolderOf(file) : std::string();
    if (request.folder.empty())
        request.folder = FolderOf(folder);
    request.nameFilters = ParseNameFilters(filter);
    request.defaultSuffix = SuffixOf(defaultExt);
    request.fileType = filter && std::strstr(filter, ".tga") ? "TPIC" : "TEXT";
    request.creator = "****";

    std::vector<std::string> chosen;
    if (!AskUser(request, &chosen))
        return false;
    FSpec record;
    if (!ToPathForm(chosen.front(), &record))
        return false;
    // A chosen folder comes back with its separator; the caller wants a name to write.
    size_t length = std::strlen(record.name);
    while (length > 1 && (record.name[length - 1] == '/' || record.name[length - 1] == ':'))
        record.name[--length] = 0;
    *file = record;
    return true;
}

void PushFileDialogAnswer(const char* path) { Script().Push({path ? path : ""}); }

void PushFileDialogAnswer(const std::vector<std::string>& paths) { Script().Push(paths); }

void PushFileDialogCancel() { Script().Push({}); }

void ClearFileDialogScript() { Script().Clear(); }

int CountFileDialogAnswers() { return Script().CountAnswers(); }

int CountFileDialogRequests() { return Script().CountRecorded(); }

FileDialogRequest GetLastFileDialogRequest() { return Script().LastRecorded(); }
