// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/PresetBrowser.hpp"

#include <algorithm>
#include <fstream>
#include <system_error>
#include <tuple>
#include <utility>

#include "editor/PresetExchange.hpp"
#include "platform/PlainText.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

namespace fs = std::filesystem;

bool isPresetName(const std::string& name) {
    return inLowerCase(name).ends_with(presetFileExtension);
}

/// Whether it may be imported: a preset, or the rules of another tool.
bool isImportable(const std::string& name) {
    const auto lower = inLowerCase(name);
    return isPresetName(name) || lower.ends_with(".bmtp") || lower.ends_with(".cfg");
}

std::string_view trimmed(std::string_view text) {
    const auto begin = text.find_first_not_of(' ');
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

bool isFolder(const fs::path& path) {
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

bool isThere(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

/// Whether an entry's name holds a text in lower case; the ending of a file counts for a text with a full
/// stop only.
bool holds(const PresetBrowserEntry& entry, const std::string& wanted) {
    auto name = inLowerCase(entry.name);
    if (!entry.isFolder && wanted.find('.') == std::string::npos) {
        name.resize(name.rfind('.'));
    }
    return name.find(wanted) != std::string::npos ||
           inLowerCase(entry.sentence).find(wanted) != std::string::npos;
}

/// Whether what was typed names a folder by the way it is written.
bool isWrittenAsFolder(std::string_view typed) {
    return typed.ends_with('/') || typed == "~" || typed == "." || typed == ".." || typed.ends_with("/..");
}

/// The entry for something in a folder; nothing for what is not to be shown.
std::optional<PresetBrowserEntry> entryFor(const fs::directory_entry& found, PresetBrowser::Mode mode) {
    std::error_code ignored;
    const auto name = found.path().filename().string();
    if (name.starts_with('.')) {
        return std::nullopt;
    }
    if (found.is_directory(ignored)) {
        return PresetBrowserEntry{escaped(name), found.path(), true};
    }
    const bool isShown = mode == PresetBrowser::Mode::open ? isImportable(name) : isPresetName(name);
    if (!isShown || !found.is_regular_file(ignored)) {
        return std::nullopt;
    }
    const auto changed = std::chrono::file_clock::to_sys(found.last_write_time(ignored));
    return PresetBrowserEntry{escaped(name), found.path(), false,
                              std::chrono::time_point_cast<std::chrono::system_clock::duration>(changed)};
}

/// What a folder holds, in order; nothing when it cannot be read.
std::optional<std::vector<PresetBrowserEntry>> contentOf(const fs::path& folder, PresetBrowser::Mode mode) {
    std::error_code error;
    std::vector<PresetBrowserEntry> entries;
    for (fs::directory_iterator found(folder, error); !error && found != fs::directory_iterator();
         found.increment(error)) {
        if (auto entry = entryFor(*found, mode)) {
            entries.push_back(*std::move(entry));
        }
    }
    if (error) {
        return std::nullopt;
    }
    std::ranges::sort(entries, {}, [](const PresetBrowserEntry& entry) {
        return std::tuple(!entry.isFolder, inLowerCase(entry.name), entry.name);
    });
    return entries;
}

/// The sentences of the examples, from the list beside them: a task, a name and a sentence a line, with " | "
/// between. A missing list gives none.
void addSentences(std::vector<PresetBrowserEntry>& examples, const fs::path& list) {
    constexpr std::string_view bar = " | ";
    std::ifstream lines(list);
    for (std::string line; std::getline(lines, line);) {
        const auto first = line.find(bar);
        const auto second = line.find(bar, first + 1);
        if (first == std::string::npos || second == std::string::npos) {
            continue;
        }
        const auto name = line.substr(first + bar.size(), second - first - bar.size());
        const auto entry = std::ranges::find(examples, name + presetFileExtension, &PresetBrowserEntry::name);
        if (entry != examples.end()) {
            entry->sentence = escaped(line.substr(0, first) + ": " + line.substr(second + bar.size()));
        }
    }
}

}  // namespace

std::string presetFileName(const std::string& name) {
    return isPresetName(name) ? name : name + presetFileExtension;
}

fs::path& lastPresetFolder() {
    static fs::path folder;
    return folder;
}

PresetBrowser::PresetBrowser(Mode mode, PresetFolders folders)
    : mode_(mode), folders_(std::move(folders)), name_(mode == Mode::save ? defaultPresetName : "") {
    if (!(folders_.last && show(*folders_.last)) && !show(folders_.home)) {
        static_cast<void>(show("/"));
    }
}

std::string PresetBrowser::action() const {
    if (asksToReplace()) {
        return "Replace";
    }
    if (picked_ && shown_[*picked_].isFolder) {
        return "Open";
    }
    return mode_ == Mode::open ? "Import" : "Export";
}

std::vector<PresetBrowser::Place> PresetBrowser::places() const {
    std::vector<Place> places{{"Home", folders_.home}};
    if (folders_.last) {
        places.push_back({"Last used", *folders_.last});
    }
    if (folders_.examples && mode_ == Mode::open) {
        places.push_back({"Examples", *folders_.examples});
    }
    return places;
}

void PresetBrowser::forget() {
    picked_.reset();
    pickedByHand_ = false;
    message_.clear();
    inTheWay_.clear();
}

void PresetBrowser::type(std::string name) {
    forget();
    name_ = std::move(name);
    if (mode_ == Mode::open) {
        const auto typed = trimmed(name_);
        const bool isPath = typed.find('/') != std::string_view::npos || isWrittenAsFolder(typed);
        filter(isPath ? std::string_view() : typed);
    }
}

void PresetBrowser::filter(std::string_view part) {
    const auto wanted = inLowerCase(std::string(part));
    shown_.clear();
    std::ranges::copy_if(all_, std::back_inserter(shown_),
                         [&wanted](const auto& entry) { return holds(entry, wanted); });
    if (!wanted.empty() && !shown_.empty()) {
        picked_ = meantBy(part);
    }
}

/// The entry that has the typed name, with or without its ending; else the first file; else the first folder.
std::size_t PresetBrowser::meantBy(std::string_view typed) const {
    const auto file = presetFileName(std::string(typed));
    const auto rank = [typed, &file](const PresetBrowserEntry& entry) {
        const auto name = entry.path.filename().string();
        return name == typed ? 0 : name == file ? 1 : entry.isFolder ? 3 : 2;
    };
    return static_cast<std::size_t>(std::ranges::min_element(shown_, {}, rank) - shown_.begin());
}

/// A file's name goes into the field. That of a folder does so only where no name has been given to a file.
void PresetBrowser::pick(std::optional<std::size_t> row) {
    if (row && *row >= shown_.size()) {
        return;
    }
    forget();
    picked_ = row;
    pickedByHand_ = row.has_value();
    if (row && (mode_ != Mode::save || !shown_[*row].isFolder)) {
        name_ = shown_[*row].name;
    }
}

void PresetBrowser::step(int rows) {
    if (shown_.empty()) {
        return;
    }
    const auto last = static_cast<std::ptrdiff_t>(shown_.size()) - 1;
    const auto from = picked_ ? static_cast<std::ptrdiff_t>(*picked_) : (rows > 0 ? -1 : last + 1);
    const auto to = picked_ ? from + rows : from + (rows > 0 ? 1 : -1);
    pick(static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(to, 0, last)));
}

bool PresetBrowser::show(const fs::path& folder) {
    auto content = contentOf(folder, mode_);
    if (!content) {
        return false;
    }
    forget();
    folder_ = folder.lexically_normal();
    if (!folder_.has_filename() && folder_.has_relative_path()) {
        folder_ = folder_.parent_path();
    }
    all_ = *std::move(content);
    if (folder == folders_.examples) {
        addSentences(all_, folder / "library.txt");
    }
    filter({});
    return true;
}

/// To save, a name that was typed goes along into the other folder; a path has done its work.
void PresetBrowser::enter(const fs::path& folder) {
    if (!show(folder)) {
        refuse("The folder " + inQuotes(folder.string()) + " cannot be read.");
    } else if (mode_ == Mode::open) {
        name_.clear();
    } else if (name_.find('/') != std::string::npos || isWrittenAsFolder(name_)) {
        name_ = defaultPresetName;
    }
}

void PresetBrowser::leave() {
    const auto left = folder_;
    enter(left.parent_path());
    if (mode_ == Mode::save) {
        return;
    }
    const auto row = std::ranges::find(shown_, left, &PresetBrowserEntry::path);
    if (row != shown_.end()) {
        pick(static_cast<std::size_t>(row - shown_.begin()));
    }
}

fs::path PresetBrowser::resolved(std::string_view typed) const {
    if (typed == "~" || typed.starts_with("~/")) {
        return (folders_.home / typed.substr(std::min<std::size_t>(2, typed.size()))).lexically_normal();
    }
    return (folder_ / typed).lexically_normal();
}

std::optional<fs::path> PresetBrowser::refuse(std::string message) {
    message_ = std::move(message);
    return std::nullopt;
}

std::optional<fs::path> PresetBrowser::confirm() {
    message_.clear();
    inTheWay_.clear();
    if (pickedByHand_) {
        return take(shown_[*picked_]);
    }
    const auto typed = std::string(trimmed(name_));
    return mode_ == Mode::open ? open(typed) : save(typed);
}

std::optional<fs::path> PresetBrowser::take(const PresetBrowserEntry& entry) {
    if (entry.isFolder) {
        enter(fs::path(entry.path));
        return std::nullopt;
    }
    return mode_ == Mode::open ? entry.path : saveAs(entry.path);
}

std::optional<fs::path> PresetBrowser::open(const std::string& typed) {
    if (typed.empty()) {
        return refuse("Choose a preset, or type its name.");
    }
    if (picked_) {
        return take(shown_[*picked_]);
    }
    const auto path = resolved(typed);
    if (isFolder(path)) {
        enter(path);
        return std::nullopt;
    }
    for (const auto& file : {path, path.parent_path() / presetFileName(path.filename().string())}) {
        if (isThere(file)) {
            return file;
        }
    }
    return refuse("There is no preset " + inQuotes(typed) + ".");
}

std::optional<fs::path> PresetBrowser::save(const std::string& typed) {
    if (typed.empty()) {
        return refuse("Type a name for the preset.");
    }
    const auto path = resolved(typed);
    if (isWrittenAsFolder(typed) || (typed.find('/') != std::string::npos && isFolder(path))) {
        enter(path);
        return std::nullopt;
    }
    return saveAs(path.parent_path() / presetFileName(path.filename().string()));
}

std::optional<fs::path> PresetBrowser::saveAs(const fs::path& file) {
    if (!isFolder(file.parent_path())) {
        return refuse("There is no folder " + inQuotes(file.parent_path().string()) + ".");
    }
    if (isFolder(file)) {
        return refuse(inQuotes(file.filename().string()) + " is a folder. Type another name.");
    }
    if (isThere(file)) {
        inTheWay_ = file;
        return refuse(inQuotes(file.filename().string()) +
                      " is there already. Replace it, or type another name.");
    }
    return file;
}

std::optional<fs::path> PresetBrowser::replace() const {
    return asksToReplace() ? std::optional(inTheWay_) : std::nullopt;
}

}  // namespace quillo
