#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace standin {

/// Takes what an RtfScanner finds.
class RtfHandler
{
public:
    virtual ~RtfHandler() = default;

    virtual void beginGroup() = 0;
    virtual void endGroup() = 0;
    /// "\f12" is the word "f" with the number 12; without a number @p hasNumber is false.
    virtual void word(std::string_view word, bool hasNumber, int number) = 0;
    /// A backslash before something else than a letter.
    virtual void symbol(char symbol) = 0;
    /// A byte of text, in the encoding of its font.
    virtual void byte(unsigned char byte) = 0;
};

/// Cuts RTF into its tokens, block by block and in fixed memory.
class RtfScanner
{
public:
    explicit RtfScanner(RtfHandler &handler) : m_handler(handler) {}

    void feed(std::string_view block);

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
    /// False when the character does not belong to the word and is still to be taken.
    bool takeWordOrNumber(char c);
    void endWord();
    void takeHexadecimal(char c);

    RtfHandler &m_handler;
    State m_state = State::Text;
    std::string m_word;
    std::string m_number;
    // Raw bytes that follow a "\bin".
    std::int64_t m_binary = 0;
    int m_hexadecimal = 0;
    int m_hexadecimalDigits = 0;
};

} // namespace standin
