// A program with one expression, which the command line names.

#include "base/string/oxa_string.h"

using namespace Oxa_1_1;

int main()
{
    int number = 1;
    String text;
    static_cast<void>(EXPRESSION);
    return number;
}
