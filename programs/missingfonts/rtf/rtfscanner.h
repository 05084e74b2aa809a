#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace programs {

/// Cuts RTF into its tokens, block by block and in fixed memory.
class RtfScanner
{
public:
    virtual ~RtfScanner() = default;

    void feed(std::string_view block);

protected:
    virtual void beginGroup() = 0;
    virtual void endGroup() = 0;
    /// "\f12" is the word "f" with the number 12; without a number @p hasNumber is false.
    virtual void word(std::string_view word, bool hasNumber, int number) = 0;
    /// A backslash before anything but a letter.
    virtual void symbol(char symbol) = 0;
    /// A byte of text, in the encoding of its font.
    virtual void byte(unsigned char byte) = 0;

private:
    enum class State {
        Text,
        Backslash,
        Word,
        Number,
        Hexadecimal
    };

    void take(char c);
    void takeText(char c);
    void takeAfterBackslash(char c);
    /// False when the character ends the word and has not been taken yet.
    bool takeWordOrNumber(char c);
    void endWord();
    void takeHexadecimal(char c);

    State m_state = State::Text;
    std::string m_word;
    std::string m_number;
    // Raw bytes left after a "\bin".
    std::int64_t m_binary = 0;
    int m_hexadecimal = 0;
    int m_hexadecimalDigits = 0;
};

} // namespace programs
