#include "helio/ctl/why/whycommand.h"

#include <algorithm>
#include <iterator>

#include "doctor/machine/machine.h"
#include "helio/ctl/doctor/messagelocale.h"
#include "helio/ctl/why/deniedcommand.h"
#include "helio/ctl/why/inputcommand.h"
#include "helio/ctl/why/opencommand.h"
#include "texts/texts.h"

namespace ctl {

namespace {

struct Question
{
    const char *word;
    int (*run)(const QStringList &arguments);
};
constexpr Question questions[] = {
    {"input", &runWhyInput},
    {"open", &runWhyOpen},
};

} // namespace

/// The rest belongs to "why denied", which also says what is wrong.
int runWhy(const QStringList &arguments)
{
    texts::useLanguage(messageLocale(doctor::thisMachine()));
    QStringList words = arguments;
    // Options may stand before the question.
    const auto isWord = [](const QString &word) { return !word.startsWith(QLatin1Char('-')); };
    const auto first = std::find_if(words.begin(), words.end(), isWord);
    const auto *const question =
        std::find_if(std::begin(questions), std::end(questions), [&](const Question &candidate) {
            return first != words.end() && *first == QLatin1String(candidate.word);
        });
    if (question == std::end(questions))
        return runWhyDenied(arguments);
    words.erase(first);
    return question->run(words);
}

} // namespace ctl
