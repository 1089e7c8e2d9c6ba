#pragma once

#include "simulator/Peer.h"

#include <deque>

namespace rv52 {

// A far end that follows a script: the first entry answers the first byte, the second the next one, and so
// on; an empty entry says nothing, and so does the peer when the script is used up.
class ScriptedPeer : public Peer {
 public:
    ScriptedPeer& Then(const std::vector<std::uint8_t>& bytes,
                       std::chrono::nanoseconds delayOfFirst = std::chrono::nanoseconds{0}) {
        PeerAnswer answer;
        for (const auto byte : bytes)
            answer.bytes.push_back({byte, {}});
        if (!answer.bytes.empty()) answer.bytes.front().delay = delayOfFirst;
        script_.push_back(answer);
        return *this;
    }

    PeerAnswer Receive(std::uint8_t byte) override {
        received.push_back(byte);
        if (script_.empty()) return {};
        auto answer = std::move(script_.front());
        script_.pop_front();
        return answer;
    }

    // Every byte so far.
    std::vector<std::uint8_t> received;

 private:
    std::deque<PeerAnswer> script_;
};

}  // namespace rv52
