#include "console_Answer.h"

#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include "console_CommandTable.h"
#include "console_JsonAnswer.h"
#include "console_TextAnswer.h"
#include "support/ConsoleProgram.h"
#include "support/TemporaryDirectory.h"
#include "ut_BufferStream.h"

namespace {

using console::left;
using console::right;
using console::Value;
using Json = nlohmann::ordered_json;
using Names = std::vector<std::string>;

// Returns the text of the answer that `describe` gives.
template<typename Describe>
std::string textOf(Describe describe) {
    utility::BufferStream out(100000);
    console::TextAnswer answer(out);
    describe(answer);
    return std::string(out.pTail(), static_cast<std::size_t>(out.ReadAvailable()));
}

// Returns the member "answer" of the object of the answer that `describe` gives.
template<typename Describe>
Json jsonOf(Describe describe) {
    console::JsonAnswer answer;
    describe(answer);
    return Json::parse(answer.object("name", nullptr))["answer"];
}

void describePorts(console::Answer& answer) {
    answer.field("scheme", "http");
    answer.table("ports", {left("name", 12), right("number", 5)});
    answer.row({"http", 80});
    answer.row({"https", 443});
}

TEST(ConsoleAnswer, UsageExample) {
    EXPECT_EQ(textOf(describePorts), "scheme     http\nhttp            80\nhttps          443\n");
    EXPECT_EQ(jsonOf(describePorts).dump(),
              R"({"scheme":"http","ports":[{"name":"http","number":80},{"name":"https","number":443}]})");
}

TEST(ConsoleAnswer, AValueHasAContentAndAText) {
    const auto describe = [](console::Answer& answer) {
        answer.field("none", Value());
        answer.field("null", static_cast<const char*>(nullptr));
        answer.field("yes", true);
        answer.field("no", false);
        answer.field("most", std::numeric_limits<unsigned long long>::max());
        answer.field("least", std::numeric_limits<long long>::min());
        answer.field("half", 0.5);
        answer.field("several", Names{"a", "b"});
        answer.field("empty", Names());
        answer.line("size", Value(1234).shownAs("1,234"));
        answer.detail("hidden", 1);
        answer.remark("a remark");
    };
    EXPECT_EQ(textOf(describe), "none       -\nnull       -\nyes        yes\nno         no\n"
                                "most       18446744073709551615\nleast      -9223372036854775808\n"
                                "half       0.500000\nseveral    a,b\nempty      -\n1,234\na remark\n");
    EXPECT_EQ(jsonOf(describe).dump(),
              R"({"none":null,"null":null,"yes":true,"no":false,"most":18446744073709551615,)"
              R"("least":-9223372036854775808,"half":0.5,"several":["a","b"],"empty":[],"size":1234,"hidden":1})");
}

TEST(ConsoleAnswer, ATableHasTitlesAndNoBlanksAtTheEndsOfLines) {
    const auto describe = [](console::Answer& answer) {
        answer.table("rows", {left("one", 5), left("two", 4, ": "), left("three", 3)}, console::Answer::WITH_TITLES);
        answer.row({"a", "", ""});
        answer.row({"longer", "b", "c"});
        answer.row({"", "", ""});
        answer.row({"a"});
        answer.field("after", 1);
    };
    EXPECT_EQ(textOf(describe), "ONE   TWO : THREE\na\nlonger b   : c\n\na\nafter      1\n");
    const Json json = jsonOf(describe);
    EXPECT_EQ(json["rows"].size(), 4U);
    EXPECT_EQ(json["rows"][3].dump(), R"({"one":"a","two":null,"three":null})");
    EXPECT_EQ(json["after"], 1);
}

TEST(ConsoleAnswer, PiecesOfATextAreJoined) {
    const auto describe = [](console::Answer& answer) {
        answer.text("content", "one\n", 4);
        answer.text("content", "two", 3);
    };
    EXPECT_EQ(textOf(describe), "one\ntwo");
    EXPECT_EQ(jsonOf(describe).dump(), R"({"content":"one\ntwo"})");
}

TEST(ConsoleJsonAnswer, UsageExample) {
    console::JsonAnswer answer;
    answer.field("scheme", "http");
    EXPECT_EQ(answer.object("url", nullptr), "{\"version\":1,\"command\":\"url\",\"answer\":{\"scheme\":\"http\"}}\n");
}

TEST(ConsoleJsonAnswer, AFailureHasNoAnswer) {
    console::JsonAnswer answer;
    answer.field("scheme", "http");
    EXPECT_EQ(answer.object("url", "url: \"x\""),
              "{\"version\":1,\"command\":\"url\",\"failure\":\"url: \\\"x\\\"\",\"partial\":{\"scheme\":\"http\"}}\n");
    EXPECT_EQ(console::JsonAnswer().object(nullptr, "unknown"),
              "{\"version\":1,\"command\":null,\"failure\":\"unknown\",\"partial\":{}}\n");
}

TEST(ConsoleJsonAnswer, EveryByteIsReadAgainOrReplaced) {
    std::string bytes;
    for (int c = 0; c < 128; ++c)
        bytes += static_cast<char>(c);
    bytes += "\xc3\xbc\xe2\x82\xac\xf0\x9f\x99\x82";
    const Json json = jsonOf([&](console::Answer& answer) { answer.field("bytes", bytes); });
    EXPECT_EQ(json["bytes"], bytes);
    const Json invalid = jsonOf([&](console::Answer& answer) { answer.field("bytes", "a\xff\xc3"); });
    EXPECT_EQ(invalid["bytes"], "a\xef\xbf\xbd\xef\xbf\xbd");
}

TEST(ConsoleJsonAnswer, AnAnswerThatIsTooLongFails) {
    console::JsonAnswer answer;
    const std::string block(1048576, 'x');
    for (std::size_t size = 0; size < console::JsonAnswer::largestSize; size += block.size())
        answer.text("content", block.data(), block.size());
    EXPECT_THROW(answer.text("content", block.data(), 1), std::length_error);
    EXPECT_THROW(answer.field("more", 1), std::length_error);
}

// Each command in JSON

// Runs commands with --json and returns the object of each.
std::vector<Json> objectsOf(const test::ChildResult& child) {
    std::vector<Json> objects;
    std::istringstream lines(child.out);
    for (std::string line; std::getline(lines, line);)
        objects.push_back(Json::parse(line));
    return objects;
}

Json answerOf(const std::string& command) {
    const test::ChildResult child = test::runConsole({"--json", "-c", command});
    EXPECT_EQ(child.status, 0) << child.err;
    const std::vector<Json> objects = objectsOf(child);
    EXPECT_EQ(objects.size(), 1U);
    return objects.empty() ? Json() : objects[0]["answer"];
}

TEST(ConsoleJson, EachCommandIsAnsweredWithOneObjectWithAVersion) {
    test::TemporaryDirectory directory;
    directory.write("text", "one two one\n");
    mkdir(directory.path("etc").c_str(), 0755);
    directory.write("etc/passwd", "root:x:0:0:root:/root:/bin/sh\nguest:!:1000:1000::/home/guest:/bin/sh\n");
    const std::string text = directory.path("text");
    const std::vector<std::string> commands = {"help",
                                               "show environment",
                                               "set NAME VALUE",
                                               "history",
                                               "debug",
                                               "debug on Map",
                                               "debug off Map",
                                               "show file " + text,
                                               "dump " + text,
                                               "copy " + text + " " + directory.path("copy"),
                                               "count words " + text,
                                               "md5 " + text,
                                               "crc " + text,
                                               "check utf8 " + text,
                                               "show ports",
                                               "show disks",
                                               "show addresses",
                                               "show wwns",
                                               "show mounts",
                                               "show processes",
                                               "show memory",
                                               "date",
                                               "uptime",
                                               "ls " + directory.path(),
                                               "path /a/b.c",
                                               "find text " + directory.path(),
                                               "url http://host/",
                                               "show users",
                                               "show user guest",
                                               "add user new",
                                               "delete user new",
                                               "quit"};
    std::string input = "# comment\n\n";
    for (const std::string& command : commands)
        input += command + "\n";
    const test::ChildResult child =
        test::runConsole({"--json"}, input, [&] { setenv("VX_ROOT", directory.path().c_str(), 1); });
    EXPECT_EQ(child.status, 0) << child.err;
    const std::vector<Json> objects = objectsOf(child);
    ASSERT_EQ(objects.size(), commands.size());
    for (std::size_t i = 0; i < commands.size(); ++i) {
        EXPECT_EQ(objects[i]["version"], 1);
        const std::string name = objects[i]["command"];
        EXPECT_EQ(commands[i].compare(0, name.size(), name), 0) << name;
        EXPECT_TRUE(objects[i]["answer"].is_object()) << name;
        EXPECT_FALSE(objects[i].contains("failure")) << name;
    }
}

TEST(ConsoleJson, ValuesHaveTheirTypes) {
    test::TemporaryDirectory directory;
    directory.write("a.txt", std::string(1234, 'x'));
    EXPECT_EQ(answerOf("ls " + directory.path() + " *.txt").dump(),
              R"({"entries":[{"type":"file","size":1234,"name":"a.txt"}]})");
    EXPECT_EQ(answerOf("path ../b.c").dump(),
              R"({"directory":"../","file":"b","extension":"c","components":[{"index":0,"name":".."},)"
              R"({"index":1,"name":"b.c"}],"normal":"b.c","leavesRoot":true})");
    EXPECT_EQ(answerOf("debug").dump(), R"({"switches":[]})");
    EXPECT_EQ(answerOf("dump " + directory.write("bytes", std::string("\0a", 2))).dump(),
              R"({"lines":[{"offset":0,"bytes":"00 61","text":".a"}]})");
    EXPECT_EQ(answerOf("count words " + directory.write("words", "b a b")).dump(),
              R"({"words":[{"count":2,"word":"b"},{"count":1,"word":"a"}]})");
    EXPECT_TRUE(answerOf("uptime")["seconds"].is_number());
    const Json none = answerOf("url x");
    EXPECT_TRUE(none["query"].is_null()) << none;
    EXPECT_EQ(answerOf("show user root")["users"][0]["userId"], 0);
}

TEST(ConsoleJson, AFailureIsAnObjectToo) {
    const test::ChildResult child =
        test::runConsole({"--json"}, "bogus\nshow file\nshow file \"\nmd5 / /dev/null\nx" + std::string(1, '\0') +
                                         "y\nurl a:b\n" + std::string(100000, 'x') + "\n");
    EXPECT_EQ(child.status, 1);
    const std::vector<Json> objects = objectsOf(child);
    ASSERT_EQ(objects.size(), 7U);
    EXPECT_TRUE(objects[0]["command"].is_null());
    EXPECT_EQ(objects[0]["failure"], "unknown command: bogus (try help)");
    EXPECT_EQ(objects[1]["command"], "show file");
    EXPECT_EQ(objects[1]["failure"], "usage: show file PATH");
    EXPECT_EQ(objects[2]["failure"], "a quote is not closed");
    EXPECT_EQ(objects[3]["failure"], "md5: /: Is a directory");
    EXPECT_EQ(objects[3]["partial"].dump(),
              R"({"files":[{"md5":"d41d8cd98f00b204e9800998ecf8427e","path":"/dev/null"}]})");
    EXPECT_EQ(objects[4]["failure"], "a command must not contain a NUL byte");
    EXPECT_EQ(objects[5]["answer"]["scheme"], "a");
    EXPECT_EQ(objects[6]["failure"], "the command is too long");
    for (const Json& object : objects) {
        EXPECT_EQ(object["version"], 1);
        EXPECT_NE(object.contains("answer"), object.contains("failure"));
    }
}

TEST(ConsoleJson, AnEndlessAnswerIsAFailure) {
    const test::ChildResult child = test::runConsole({"--json", "-c", "show file /dev/zero"});
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.err, "show file: the answer is too long for a JSON object: use the text\n");
    ASSERT_EQ(objectsOf(child).size(), 1U);
    EXPECT_EQ(objectsOf(child)[0]["partial"].dump(), "{}");
}

} // namespace
