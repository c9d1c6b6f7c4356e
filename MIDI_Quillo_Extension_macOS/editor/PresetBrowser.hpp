// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillo {

/// What a preset is saved as under a typed name: ".json" is added to every name that does not end so already,
/// in large or small letters.
[[nodiscard]] std::string presetFileName(const std::string& name);

/// The folder that a preset was last read from or written to since the process began; empty before. Every
/// editor of the process knows the same. [main] only.
[[nodiscard]] std::filesystem::path& lastPresetFolder();

/// A folder, or a preset file, in the list of the browser.
struct PresetBrowserEntry {
    std::string name;  ///< fit to be shown: what cannot be seen in it is escaped
    std::filesystem::path path;
    bool isFolder = false;
    std::chrono::system_clock::time_point changed{};  ///< of files only
    std::string sentence{};                           ///< of examples only: their task and what they do

    bool operator==(const PresetBrowserEntry&) const = default;
};

/// The folders that the browser knows by name.
struct PresetFolders {
    std::filesystem::path home;
    std::optional<std::filesystem::path> last{};      ///< where a preset was read or written last
    std::optional<std::filesystem::path> examples{};  ///< the presets that come with the program
};

/// Decides everything about choosing a preset file; the view around it draws and passes on keys and clicks.
/// It shows one folder: its folders first, then its files whose names end in ".json", each in alphabetical
/// order without regard to large and small letters; hidden ones are left out.
///
/// To open a file, the user picks an entry, or types: a part of a name or of an example's sentence, which
/// leaves the entries that hold it and picks the one that has this name as a whole, else the first file, or a
/// path, absolute, from the shown folder, or from home behind "~". What is picked is what is opened. To save
/// one, the user types a name or such a path. [main] only.
///
///     PresetBrowser browser(PresetBrowser::Mode::open, {.home = "/home/me"});
///     browser.type("echo");
///     const auto file = browser.confirm();  // /home/me/echo.json
class PresetBrowser {
public:
    enum class Mode { open, save };

    struct Place {
        std::string name;
        std::filesystem::path folder;
    };

    /// Begins in the last folder, or at home where there is none any more.
    PresetBrowser(Mode mode, PresetFolders folders);

    [[nodiscard]] Mode mode() const { return mode_; }
    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }
    [[nodiscard]] const std::vector<PresetBrowserEntry>& entries() const { return shown_; }
    [[nodiscard]] std::optional<std::size_t> picked() const { return picked_; }
    /// What stands in the field for the name.
    [[nodiscard]] const std::string& name() const { return name_; }
    /// What the user must know: a question, or why nothing was chosen. Empty when there is nothing.
    [[nodiscard]] const std::string& message() const { return message_; }
    /// Whether a file is in the way, which `message` names.
    [[nodiscard]] bool asksToReplace() const { return !inTheWay_.empty(); }
    /// The word for the button that confirms: "Import", "Export", "Replace", or "Open" for a folder.
    [[nodiscard]] std::string action() const;
    /// The folders that are one click away. The examples are there for opening only: nobody saves among them.
    [[nodiscard]] std::vector<Place> places() const;

    /// The user has changed the name to this.
    void type(std::string name);
    /// Picks an entry, or none.
    void pick(std::optional<std::size_t> row);
    /// Picks the entry so many rows further down; from none, the first or the last one.
    void step(int rows);
    /// Shows another folder. One that cannot be read is named by the message, and nothing changes.
    void enter(const std::filesystem::path& folder);
    /// Shows the folder around this one. To open a file, this one is picked there; to save one, confirming
    /// saves there.
    void leave();

    /// The file that the user has chosen. Nothing when there is none yet: the message then says why, or a
    /// folder was entered. A file that would be replaced is not chosen; `asksToReplace` is true from then on.
    [[nodiscard]] std::optional<std::filesystem::path> confirm();
    /// The file that is in the way: the user wants it to be replaced.
    [[nodiscard]] std::optional<std::filesystem::path> replace() const;

private:
    [[nodiscard]] std::filesystem::path resolved(std::string_view typed) const;
    [[nodiscard]] bool show(const std::filesystem::path& folder);
    void filter(std::string_view part);
    [[nodiscard]] std::size_t meantBy(std::string_view typed) const;
    void forget();
    std::optional<std::filesystem::path> refuse(std::string message);
    std::optional<std::filesystem::path> take(const PresetBrowserEntry& entry);
    std::optional<std::filesystem::path> open(const std::string& typed);
    std::optional<std::filesystem::path> save(const std::string& typed);
    std::optional<std::filesystem::path> saveAs(const std::filesystem::path& file);

    Mode mode_;
    PresetFolders folders_;
    std::filesystem::path folder_;
    std::vector<PresetBrowserEntry> all_;
    std::vector<PresetBrowserEntry> shown_;
    std::optional<std::size_t> picked_;
    bool pickedByHand_ = false;  ///< rather than by what was typed
    std::string name_;
    std::string message_;
    std::filesystem::path inTheWay_;
};

}  // namespace quillo
