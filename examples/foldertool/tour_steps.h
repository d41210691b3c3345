#pragma once

#include <chrono>
#include <string>

namespace foldertool
{

/// Numbers the steps of the tour and measures them.
class TourSteps
{
   public:
    void begin(unsigned int title);
    /// What is told while a step is under way.
    static void detail(const std::string& line);
    /// Prints the result of the step and the time that it took.
    void end(const std::string& result);

    /// The step under way did not do all that it should.
    void fail() { m_isWhole = false; }

    /// Prints the time of all steps. True when none failed.
    bool finish() const;

   private:
    using Clock = std::chrono::steady_clock;

    int m_number = 0;
    bool m_isWhole = true;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_stepStart;
};

}  // namespace foldertool
