// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "hosts/jack/EventLoop.hpp"

namespace quillo {

/// The program as a client of a session manager that speaks the NSM protocol, version 1: it announces the
/// program, hands what the manager asks for to a `Program`, and answers when that is done. This is the one
/// place that calls the OSC library. [main]
///
///     NSMClient manager(url, program);
///     loop.watch(manager.descriptor(), [&] { manager.receive(); });
///     manager.announce({.name = "midi-quillo", .executable = "midi-quillo-jack", .hasWindow = true});
class NSMClient {
public:
    /// What the manager is told of the program.
    struct Announcement {
        std::string name;        ///< with which the names of its clients begin
        std::string executable;  ///< by which it can be started again
        bool hasWindow = false;  ///< that can be shown and hidden
    };

    /// Where the program keeps what belongs to it, and what it calls itself meanwhile.
    struct Project {
        std::string path;      ///< of a folder that is the program's own, whether it exists or not
        std::string clientID;  ///< the name for its JACK client
    };

    /// Why something was not done, in the protocol's numbers and in words for a musician.
    struct Failure {
        enum Code { general = -1, noSessionOpen = -6, badProject = -9 };

        Code code = general;
        std::string words;
    };
    using Outcome = std::optional<Failure>;

    /// What the manager asks for. What an operation throws counts as a general failure.
    class Program {
    public:
        virtual ~Program() = default;

        /// Leaves the project that is open and opens this one; a new one where there is nothing yet.
        virtual Outcome openProject(const Project& project) = 0;
        /// Saves the project that is open.
        virtual Outcome saveProject() = 0;
        virtual void showWindow(bool isShown) = 0;
    };

    /// How long a manager may take to answer the announcement.
    static constexpr int secondsToAnswer = 5;

    /// `url` is the value of NSM_URL. Throws `std::runtime_error` with the reason for one that leads nowhere.
    NSMClient(const std::string& url, Program& program);
    NSMClient(const NSMClient&) = delete;
    NSMClient& operator=(const NSMClient&) = delete;

    void announce(const Announcement& announcement);

    /// Can be read when `receive` has something to do.
    [[nodiscard]] int descriptor() const;
    void receive();

    /// To be called `EventLoop::ticksPerSecond` times a second.
    void tick();

    /// Why there is no session: the manager refuses the program, or does not answer. Final: what comes later
    /// is ignored.
    [[nodiscard]] const std::optional<std::string>& refusal() const { return refusal_; }

    /// The manager learns whether there are changes that are not saved.
    void setDirty(bool isDirty);
    /// The manager learns whether the window is shown.
    void setWindowShown(bool isShown);

private:
    struct CloseServer {
        void operator()(void* server) const;
    };
    struct FreeAddress {
        void operator()(void* address) const;
    };

    template <class Handler>
    void on(const char* path, const char* types, Handler handler);
    void answer(const char* path, const std::function<Outcome()>& operation);
    void send(const char* path);
    void sendWindowShown();
    void joined(const std::string& path);

    Program& program_;
    const std::string url_;
    std::unique_ptr<void, FreeAddress> manager_;
    std::unique_ptr<void, CloseServer> server_;
    std::optional<std::string> refusal_;
    bool hasJoined_ = false;
    bool hasWindow_ = false;
    bool isDirty_ = false;
    bool isShown_ = false;
    int ticks_ = 0;  ///< without an answer
};

}  // namespace quillo
