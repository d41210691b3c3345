#include "examples/foldertool/tour_steps.h"

#include "examples/foldertool/output.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

namespace
{

const std::string INDENT(3, ' ');
constexpr std::size_t RESULT_COLUMNS = 66;
constexpr std::size_t TIME_COLUMNS = 10;

std::string timed(const std::string& result, std::chrono::duration<double> time)
{
    return left(result, RESULT_COLUMNS) + right(timeText(time), TIME_COLUMNS);
}

}  // namespace

void TourSteps::begin(unsigned int title)
{
    print("");
    print(std::to_string(++m_number) + ". " + text(title));
    flushOutput();
    m_stepStart = Clock::now();
}

void TourSteps::detail(const std::string& line) { print(INDENT + line); }

void TourSteps::end(const std::string& result) { print(timed(INDENT + result, Clock::now() - m_stepStart)); }

bool TourSteps::finish() const
{
    print("");
    print(timed(text(m_isWhole ? IDS_ALL_IN_ALL : IDS_FAILED_STEPS), Clock::now() - m_start));
    return m_isWhole;
}

}  // namespace foldertool
