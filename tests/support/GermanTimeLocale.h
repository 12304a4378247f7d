#pragma once

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "TemporaryDirectory.h"

namespace test {

/// Sets a locale with German names of days and months (LC_TIME) while it exists, and restores the previous locale on
/// destruction. One at a time, and only while no other thread uses the locale.
///
/// `localedef` (in Debian's essential package libc-bin) compiles the locale from texts in this header into a temporary
/// directory, so neither root nor an installed locale is needed.
///
///     const test::GermanTimeLocale german;
///     if (!german.isSet())
///         GTEST_SKIP() << "localedef did not create a locale";
class GermanTimeLocale {
public:
    GermanTimeLocale() : m_previous(std::setlocale(LC_TIME, nullptr)), m_isSet(false) {
        const std::string source = m_directory.write("source", timeCategory());
        const std::string charmap = m_directory.write("charmap", asciiCharmap());
        // Ignore the result: localedef warns about the missing categories and exits with 1.
        const std::string command = "localedef -c --no-archive -f '" + charmap + "' -i '" + source + "' '" +
                                    m_directory.path(name) + "' >'" + m_directory.path("log") + "' 2>&1";
        static_cast<void>(std::system(command.c_str()));

        const char* path = std::getenv("LOCPATH");
        const bool wasSet = path != nullptr;
        const std::string previousPath = wasSet ? path : "";
        setenv("LOCPATH", m_directory.path().c_str(), 1);
        m_isSet = std::setlocale(LC_TIME, name) != nullptr;
        if (wasSet)
            setenv("LOCPATH", previousPath.c_str(), 1);
        else
            unsetenv("LOCPATH");
    }
    GermanTimeLocale(const GermanTimeLocale&) = delete;
    GermanTimeLocale& operator=(const GermanTimeLocale&) = delete;
    ~GermanTimeLocale() {
        std::setlocale(LC_TIME, m_previous.c_str());
    }

    bool isSet() const {
        return m_isSet;
    }

private:
    // Not "german", which is an alias of de_DE.
    static constexpr const char* name = "test_german";

    static std::string timeCategory() {
        return "LC_TIME\n"
               "abday \"So\";\"Mo\";\"Di\";\"Mi\";\"Do\";\"Fr\";\"Sa\"\n"
               "day \"Sonntag\";\"Montag\";\"Dienstag\";\"Mittwoch\";\"Donnerstag\";\"Freitag\";\"Samstag\"\n"
               "abmon \"Jan\";\"Feb\";\"Mrz\";\"Apr\";\"Mai\";\"Jun\";\"Jul\";\"Aug\";\"Sep\";\"Okt\";\"Nov\";\"Dez\"\n"
               "mon \"Januar\";\"Februar\";\"Maerz\";\"April\";\"Mai\";\"Juni\";\"Juli\";\"August\";\"September\";"
               "\"Oktober\";\"November\";\"Dezember\"\n"
               "d_t_fmt \"%a %d %b %Y %T\"\n"
               "d_fmt \"%d.%m.%Y\"\n"
               "t_fmt \"%T\"\n"
               "am_pm \"\";\"\"\n"
               "t_fmt_ampm \"\"\n"
               "END LC_TIME\n";
    }

    static std::string asciiCharmap() {
        std::string text = "<code_set_name> ASCII\n<escape_char> /\n<comment_char> %\n<mb_cur_max> 1\nCHARMAP\n";
        for (unsigned int code = 0; code < 128; ++code) {
            char line[32];
            std::snprintf(line, sizeof line, "<U%04X> /x%02x\n", code, code);
            text += line;
        }
        return text + "END CHARMAP\n";
    }

    TemporaryDirectory m_directory;
    std::string m_previous;
    bool m_isSet;
};

} // namespace test
