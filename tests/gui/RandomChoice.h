#pragma once
#include <cstddef>
#include <random>
#include <utility>

namespace tessarine
{
/// Draws that are the same everywhere for the same seed.
class RandomChoice
{
public:
    explicit RandomChoice(unsigned seed) : m_Engine(seed) {}

    /// @return from 0 to below the count, which must not be 0
    int Below(int count) { return static_cast<int>(m_Engine() % static_cast<unsigned>(count)); }
    bool Percent(int share) { return Below(100) < share; }

    /// One of a list, which must not be empty.
    template <class TList>
    auto Of(const TList& list)
    {
        return *std::next(std::begin(list), Below(static_cast<int>(std::size(list))));
    }

private:
    std::mt19937 m_Engine;
};
}
