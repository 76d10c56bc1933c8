#pragma once

#include <QString>
#include <exception>
#include <string>

// Error numbers the program raises; the classic ones where they fit.
namespace ErrorNumber {
constexpr int InvalidCall = 5;
constexpr int TypeMismatch = 13;
constexpr int FileNotFound = 53;
constexpr int PathNotFound = 76;
constexpr int ObjectNotSet = 91;
constexpr int ObjectRequired = 424;
// A browser call that failed or timed out; the description is the browser's message.
constexpr int BrowserCall = 10001;
} // namespace ErrorNumber

// The one error type of the program: a number and a description, as the error report shows them.
class AppError : public std::exception
{
public:
    AppError(int number, QString description)
        : m_number(number), m_description(std::move(description)),
          m_what(m_description.toStdString())
    {
    }

    int number() const { return m_number; }
    const QString& description() const { return m_description; }
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    int m_number;
    QString m_description;
    std::string m_what;
};
