// The games of an import file, read one after another and handed out in the
// file's order. Read ahead, they are read on a thread of their own while the
// caller plays the games before them; the caller sees the same games, the
// same progress and the same failures, in the same order, either way.
#pragma once

#include <atomic>
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
    // Waits until `ready` holds: a few pauses, then asleep with `asleep`
    // raised for the other side to see. A longer spin only burns the core
    // that the working database's writer would have taken.
    template <class Ready>
    void WaitUntil(std::atomic<bool>& asleep, Ready ready);
    void Wake(std::atomic<bool>& asleep);

    LineSource& file_;
    ImportState& state_;
    Reader read_;
    const bool ahead_;
    Game* current_ = nullptr;
    std::vector<std::unique_ptr<Game>> slots_;

    // Read ahead: slots [taken_, written_) are read and not yet played; each
    // counter has one writer. Each side looks at the other's counter only
    // when its own view of it runs out, and the counters lie apart, so that a
    // game handed over costs no trip between the cores' caches. A side that
    // has to wait sleeps until the other has done a good stretch, so the two
    // seldom hand the core to the kernel: the reader, woken on a full ring,
    // until half of it is free; this side, waiting for games, until a quarter
    // of it is read.
    static constexpr size_t kSlots = 256;
    static constexpr size_t kGiveBack = 16;  // slots played before taken_ moves
    static constexpr size_t kFetched = 16 * sizeof(std::string);  // of the next game's moves
    alignas(64) std::atomic<size_t> written_{0};
    alignas(64) std::atomic<size_t> taken_{0};
    alignas(64) std::atomic<bool> finished_{false}, stop_{false};
    std::atomic<bool> readerAsleep_{false}, playerAsleep_{false};
    alignas(64) size_t next_ = 0;  // the next game to hand out
    size_t ready_ = 0;             // written_ as this side saw it last
    std::exception_ptr failure_;  // set before finished_
    std::mutex lock_;             // only to sleep and wake
    std::condition_variable wake_;
    std::thread reader_;
};

}  // namespace vantrel::import
