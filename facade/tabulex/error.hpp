// error: why a file can't be opened or read.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "tabulex/entries.hpp"

namespace tabulex {

// what() has all of it: "quotes.csv:12: the cause".
class error : public std::runtime_error
{
public:
    error(std::string file, std::string message, std::uint64_t line = 0)
        : std::runtime_error(file + (line ? ":" + std::to_string(line) : "") + ": " + message),
          m_file(std::move(file)), m_message(std::move(message)), m_line(line)
    {}

    const std::string& file() const { return m_file; } // as the program gave it
    const std::string& message() const { return m_message; }
    std::uint64_t line() const { return m_line; } // 0 where no line is to blame

private:
    std::string m_file;
    std::string m_message;
    std::uint64_t m_line;
};

namespace detail {

inline Text text_of(const std::string& text)
{
    return {text.data(), text.size()};
}

inline std::string string_of(Text text)
{
    return {text.data, text.size};
}

// Takes the reason of a call that fails; nothing is thrown through the library.
class Failure
{
public:
    Failing taker()
    {
        return {[](void* self, Text message, std::uint64_t line) {
                    static_cast<Failure*>(self)->take(message, line);
                },
                this};
    }

    [[noreturn]] void raise(const std::string& file) const
    {
        throw error(file, m_message.empty() ? "memory ran out" : m_message, m_line);
    }

private:
    void take(Text message, std::uint64_t line) noexcept
    try {
        m_message = string_of(message);
        m_line = line;
    } catch (const std::bad_alloc&) {
    }

    std::string m_message;
    std::uint64_t m_line = 0;
};

} // namespace detail
} // namespace tabulex
