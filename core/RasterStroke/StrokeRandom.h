// The random numbers of all strokes: one object of the application, so that sessions with the same seed and
// input draw the same lines.
#pragma once

#include <boost/random/mersenne_twister.hpp>

#include <cstdint>

/// Both generators use only integer arithmetic: the same numbers on every machine. A copy continues the
/// same sequence. Not thread-safe.
class CStrokeRandom {
public:
    /// The largest number of Rand.
    static constexpr int RAND_LARGEST = 32767;

    explicit CStrokeRandom(uint32_t uSeed = 1) { Seed(uSeed); }

    void Seed(uint32_t uSeed) {
        m_uState = uSeed;
        m_twister.seed(uSeed);
    }
    /// 0 to RAND_LARGEST.
    int Rand() {
        m_uState = m_uState * 6364136223846793005u + 1442695040888963407u;
        return static_cast<int>(m_uState >> 49);
    }
    boost::random::mt19937& Twister() { return m_twister; }

private:
    uint64_t m_uState = 0;
    boost::random::mt19937 m_twister;
};
