#pragma once

#include <QApplication>

#include <array>

namespace helio {

/// The application object of a program without windows. It needs no display; DialogAnswers answers
/// its file dialogs.
///
/// Arguments choose Qt's platform. Environment variables would be inherited by the programs that
/// the library starts.
class HeadlessApplication : public QApplication
{
    Q_OBJECT

public:
    explicit HeadlessApplication(char *programName);

private:
    struct Arguments
    {
        explicit Arguments(char *programName);

        std::array<char *, 6> values;
        int count;
    };

    /// Suppresses one of Qt's messages during its lifetime.
    class QuietStart
    {
    public:
        QuietStart();
        ~QuietStart();
        Q_DISABLE_COPY(QuietStart)
    };

    HeadlessApplication(Arguments &arguments, const QuietStart &quietStart);
    static Arguments &arguments(char *programName);
};

} // namespace helio
