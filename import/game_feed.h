// The games of an import file, read one after another and handed out in the
// file's order. Read ahead, they are read on a thread of their own while the
// caller plays the games before them; the caller sees the same games, the
// same progress and the same failures, in the same order, either way.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "import/readers.h"

namespace vantrel::import {

class GameFeed {
public:
    struct Game {
        GameRecord record;
        int16_t lastPly = -1;  // what the reader returned: -1 for no game
        int64_t bytes = 0;     // of the file, once the game was read
        int64_t line = 0;      // the file's line number then, or where reading failed
    };
    // Reads one game, as ReadPgnGame and ReadSanGame do.
    using Reader = std::function<int16_t(ImportState&, GameRecord&)>;

    // `state` is set up on the open `file`; both are the feed's until it is
    // destroyed or stopped.
    GameFeed(LineSource& file, ImportState& state, Reader read, bool ahead);
    ~GameFeed() { Stop(); }
    GameFeed(const GameFeed&) = delete;
    GameFeed& operator=(const GameFeed&) = delete;

    // The next game, valid until the next call; nullptr after the last. A
    // failure of the reader is thrown here, in its place among the games.
    Game* Next();
    // The game in hand: the one Next gave last, or, once Next has thrown, the
    // game as far as it was read. nullptr before the first.
    const Game* Current() const { return current_; }
    // Ends the reading; the state is the caller's again.
    void Stop();

private:
    Game* ReadOne(Game& game);
    void ReadAhead();

    LineSource& file_;
    ImportState& state_;
    Reader read_;
    const bool ahead_;
    Game* current_ = nullptr;
    std::vector<std::unique_ptr<Game>> slots_;

    // Read ahead: slots [taken_, written_) are read and not yet played.
    static constexpr size_t kSlots = 128;
    std::mutex lock_;
    std::condition_variable readable_, writable_;
    size_t written_ = 0, taken_ = 0;
    size_t wanted_ = SIZE_MAX;  // while this side waits: the count of games read that wakes it
    size_t ready_ = 0, next_ = 0;  // this side's view: games known read, and the next to hand out
    bool finished_ = false, stop_ = false;
    std::exception_ptr failure_;
    std::thread reader_;
};

}  // namespace vantrel::import
