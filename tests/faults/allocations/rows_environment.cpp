#include <cstdlib>
#include <cstring>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

#include "TemporaryDirectory.h"
#include "Trial.h"
#include "fw_StableStringRepository.h"
#include "ut_Arguments.h"
#include "ut_BufferStream.h"
#include "ut_DirIterator.h"
#include "ut_Environment.h"
#include "ut_Options.h"
#include "ut_PW.h"
#include "ut_PWService.h"
#include "ut_Path.h"
#include "ut_URL.h"

// Command lines, options, variables, paths, URLs and the password file.

namespace faults {

namespace {

using utility::BufferStream;

std::vector<Row> argumentRows() {
    using utility::Arguments;
    return {
        {"Arguments: constructor from a text", "same 1230 bad_alloc",
         [](Trial& trial) {
             std::optional<Arguments> arguments;
             trial.run([&] { arguments.emplace("show \"my notes\" -lines 20"); });
             if (arguments.has_value()) {
                 arguments->AddArg("more");
                 FAULTS_EXPECT(arguments->isArg("more"));
             }
         }},
        {"Arguments: constructor from an array", "same 1230 bad_alloc",
         [](Trial& trial) {
             char name[] = "name";
             char word[] = "word";
             char* words[] = {name, word, nullptr};
             construct<Arguments>(trial, 2, words);
         }},
        {"Arguments: addArgs", "same 1230 bad_alloc",
         [](Trial& trial) {
             Arguments arguments("one");
             trial.run([&] { arguments.addArgs("a b c d e f g h i j k l m n o p q r s t u v \"w x\""); });
             FAULTS_EXPECT(arguments.isArg("one"));
             arguments.AddArg("last");
             FAULTS_EXPECT(arguments.isArg("last"));
         }},
        {"Arguments: AddArg", "same",
         [](Trial& trial) {
             Arguments arguments("one");
             trial.run([&] { arguments.AddArg("two"); });
             FAULTS_EXPECT(arguments.isArg("one") && arguments.ArgCount() == 2);
         }},
        {"Arguments: ModifyArg", "same",
         [](Trial& trial) {
             Arguments arguments("one two");
             trial.run([&] { arguments.ModifyArg(1, "three"); });
             FAULTS_EXPECT(arguments.isArg("one") && arguments.ArgCount() == 2);
         }},
        {"Arguments: ToString without space", "same bad_alloc",
         [](Trial& trial) {
             const Arguments arguments("one two");
             BufferStream out(4);
             trial.run([&] { arguments.ToString(0, out); });
         }},
        {"Arguments: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<Arguments> arguments(std::in_place, "Entity two -lines 20 \"x");
             BufferStream out(64);
             trial.run([&] {
                 bool whole = arguments->ArgCount() == 5 && arguments->ArgValue(1) != nullptr &&
                              arguments->isArg("TWO") && arguments->ArgIndex("two") == 1 &&
                              arguments->ArgIndexByToken(367) == 0 && arguments->ArgString("-lines") != nullptr &&
                              arguments->ArgInt("-lines") == 20 && arguments->quoteUnmatched() &&
                              arguments->getName() == 291 && arguments->getNameString() != nullptr &&
                              arguments->ToString(0, out) != nullptr;
                 arguments->DeleteArg(0u);
                 arguments->DeleteArg("two");
                 arguments.reset();
                 return whole;
             });
         }},
    };
}

std::vector<Row> optionRows() {
    using utility::Environment;
    using utility::Options;
    return {
        {"Options: set", "same",
         [](Trial& trial) {
             char text[] = "Entity=one,two&URL";
             Options options;
             trial.run([&] { options.set(text); });
             options.addOption(1, "value");
             FAULTS_EXPECT(options.isOption(1));
         }},
        {"Options: addOption", "same",
         [](Trial& trial) {
             Options options;
             trial.run([&] { options.addOption(1, "value"); });
             options.addOption(2, "value");
             FAULTS_EXPECT(options.isOption(2, "value"));
         }},
        {"Options: setOption", "same",
         [](Trial& trial) {
             Options options;
             trial.run([&] { options.setOption(1, "value", 0); });
             options.setOption(1, "other", 0);
             FAULTS_EXPECT(options.isOption(1, "other"));
         }},
        {"Options: toStream without space", "same bad_alloc",
         [](Trial& trial) {
             Options options;
             options.addOption(367, "value");
             BufferStream out(4);
             trial.run([&] { options.toStream(out); });
         }},
        {"Options: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<Options> options(std::in_place);
             options->addOption(367, "20");
             options->addOption(630, "b");
             options->addOption(630, "c");
             BufferStream out(64);
             trial.run([&] {
                 const Options& constant = *options;
                 options->toStream(out);
                 bool whole = options->isOption(367) && options->isOption(630, "b") &&
                              options->isOptionCase(630, "B") && options->getAsInt(367, 0) == 20 &&
                              constant.getAsString(630, 1) == options->getAsString(630, 1) && options->count() == 3 &&
                              options->getKey(0) == 367;
                 options->deleteOption(630, "b");
                 options->deleteOption(630);
                 options->clear();
                 options.reset();
                 const Options none;
                 return whole && none.count() == 0;
             });
         }},
        {"Environment: constructor", "1230 bad_alloc",
         [](Trial& trial) {
             construct<Environment>(trial);
         }},
        {"Environment: set a new variable", "same 1230 bad_alloc",
         [](Trial& trial) {
             Environment set;
             for (const char* name : {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"})
                 set.set(name, "value");
             trial.run([&] { set.set("new", "value"); });
             FAULTS_EXPECT(set.length() == 10 || set.length() == 11);
             FAULTS_EXPECT(set.isSet("new") == (set.length() == 11) && set.isSet("a") && set.isSet("j"));
             set.set("last", "value");
             FAULTS_EXPECT(set.isSet("last"));
         }},
        {"Environment: set another value", "same",
         [](Trial& trial) {
             Environment set;
             set.set("name", "value");
             trial.run([&] { set.set("name", "other"); });
             FAULTS_EXPECT(set.get("name") != nullptr && set.length() == 1);
         }},
        {"Environment: ElementAt out of range", "same bad_alloc",
         [](Trial& trial) {
             const Environment set;
             char name[8];
             trial.run([&] { set.ElementAt(0, name, sizeof name); });
         }},
        {"Environment: SetEnv", "same -1",
         [](Trial& trial) {
             static unsigned int number = 0;
             const std::string name = "FAULTS" + std::to_string(++number);
             trial.run([&] { return Environment::SetEnv(name.c_str(), "value"); });
             FAULTS_EXPECT((Environment::GetEnv(name.c_str()) != nullptr) == !trial.failed());
             Environment::UnsetEnv(name.c_str());
         },
         "the platform keeps what it took for a variable"},
        {"Environment: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<Environment> set(std::in_place);
             set->set("one", "1");
             set->set("two", "2");
             BufferStream out(64);
             BufferStream process(65536);
             trial.run([&] {
                 char name[8];
                 const bool whole = set->length() == 2 && set->NumElements() == 2 && set->find("one") == 0 &&
                                    set->get("two") != nullptr && set->getAsInt("two") == 2 && set->getAsBool("one") &&
                                    set->isSet("one") && set->ElementAt(0, name, sizeof name) != nullptr;
                 set->privateInformation(out, 0);
                 Environment::globalInformation(process, 0);
                 set->unset("one");
                 set.reset();
                 return whole && Environment::GetEnv("FAULTS") == nullptr && Environment::UnsetEnv("FAULTS") == 0;
             });
         }},
    };
}

constexpr const char* longDirectory = "/a directory name that is longer than a short string/and another one of them/";
constexpr const char* longFile = "a file name that is longer than a short string.and an extension that is as well";

// An operation of a path that leaves it unchanged if an allocation fails.
Row pathRow(const std::string& name, void (*operation)(utility::Path& path)) {
    return {"Path: " + name, "bad_alloc", [operation](Trial& trial) {
                utility::Path path("/etc/hosts.allow");
                trial.run([&] { operation(path); });
                if (trial.failed())
                    FAULTS_EXPECT(std::strcmp(path.getValue(), "/etc/hosts.allow") == 0);
                path.setFullPath("/usr");
                FAULTS_EXPECT(std::strcmp(path.getValue(), "/usr") == 0 && path.componentCount() == 1);
            }};
}

std::vector<Row> pathRows() {
    using utility::DirIterator;
    using utility::Path;
    return {
        {"Path: constructor", "bad_alloc",
         [](Trial& trial) {
             construct<Path>(trial, "/a directory name that is long enough/and a file name.as well");
         }},
        {"Path: constructor from parts", "bad_alloc",
         [](Trial& trial) {
             construct<Path>(trial, longDirectory, longFile, longFile);
         }},
        pathRow("setFullPath", [](Path& path) { path.setFullPath((std::string(longDirectory) + longFile).c_str()); }),
        pathRow("setFullFile", [](Path& path) { path.setFullFile(longFile); }),
        pathRow("setValue", [](Path& path) { path.setValue(longDirectory, true, false, false); }),
        pathRow("setPath", [](Path& path) { path.setPath(longDirectory); }),
        pathRow("setPath of a part", [](Path& path) { path.setPath(longDirectory, 40); }),
        pathRow("setFile", [](Path& path) { path.setFile(longFile); }),
        pathRow("setExtension", [](Path& path) { path.setExtension(longFile); }),
        {"Path: getFullFile", "bad_alloc",
         [](Trial& trial) {
             const Path path((std::string(longDirectory) + longFile).c_str());
             trial.run([&] { path.getFullFile(); });
             FAULTS_EXPECT(std::strcmp(path.getFullFile(), longFile) == 0);
         }},
        {"Path: getValue", "bad_alloc",
         [](Trial& trial) {
             const std::string whole = std::string(longDirectory) + longFile;
             const Path path(whole.c_str());
             trial.run([&] { path.getValue(); });
             FAULTS_EXPECT(path.getValue() == whole);
         }},
        {"Path: component", "bad_alloc",
         [](Trial& trial) {
             const Path path(longDirectory);
             trial.run([&] { path.component(0); });
             FAULTS_EXPECT(path.component(1) != nullptr);
         }},
        {"Path: removeComponent", allocatesNothing,
         [](Trial& trial) {
             Path path("/a directory name that is long enough/another one, also long enough/third");
             trial.run([&] { path.removeComponent(1); });
             FAULTS_EXPECT(path.componentCount() == 2);
         }},
        {"Path: isValid", "bad_alloc",
         [](Trial& trial) {
             Path path("/a directory name that is long enough/../another one, also long enough/./x");
             trial.run([&] { return path.isValid(); });
             FAULTS_EXPECT(path.isValid());
         }},
        {"Path: exists", "bad_alloc",
         [](Trial& trial) {
             const Path path(longDirectory);
             trial.run([&] { return path.exists(); });
         }},
        {"Path: makeDir", "bad_alloc",
         [](Trial& trial) {
             Path path((std::string(longDirectory) + "x").c_str());
             trial.run([&] { return path.makeDir(); });
         }},
        {"Path: find", "bad_alloc",
         [](Trial& trial) {
             Path path("null");
             trial.run([&] { return path.find("/no such directory, with a long name:/dev"); });
             FAULTS_EXPECT((std::strcmp(path.getPath(), "/dev/") == 0) == !trial.failed());
             FAULTS_EXPECT(path.find("/dev"));
         }},
        {"Path: findFull", "bad_alloc",
         [](Trial& trial) {
             Path path("dev/null");
             trial.run([&] { return path.findFull("/no such directory, with a long name:/"); });
             FAULTS_EXPECT(path.findFull("/") || !trial.failed());
         }},
        {"Path: getName", "0",
         [](Trial& trial) {
             static unsigned int number = 0;
             const Path path(("/faults" + std::to_string(++number) + "/").c_str());
             trial.run([&] {
                 const stringtoken token = path.getName();
                 return token != 0 ? 1 : 0;
             });
         },
         "new names are kept for good"},
        {"Path: getNameString", "null",
         [](Trial& trial) {
             static unsigned int number = 0;
             const Path path(("/faults-s" + std::to_string(++number) + "/").c_str());
             trial.run([&] { return path.getNameString(); });
         },
         "new names are kept for good"},
        {"Path: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             Path path("/etc/a.b");
             trial.run([&] {
                 path.evaluatePath();
                 path.dumpComponents();
                 return path.isAbsolute() && path.componentCount() == 2 && path.getFile()[0] == 'a' &&
                        path.getExtension()[0] == 'b' && path.getPath()[0] == '/';
             });
         }},
        {"DirIterator: constructor", "same bad_alloc",
         [](Trial& trial) {
             std::optional<DirIterator> files;
             trial.run([&] { files.emplace("/a directory name that is long enough", "*.h"); });
             if (files.has_value()) {
                 files->setFullPath("/dev/");
                 FAULTS_EXPECT(files->getFirst("null") != nullptr);
             }
         }},
        {"DirIterator: getFirst", "null",
         [](Trial& trial) {
             DirIterator files("/dev", "*");
             trial.run([&] { return files.getFirst("null"); });
             FAULTS_EXPECT(files.getFirst("null") != nullptr && std::strcmp(files.getValue(), "/dev/null") == 0);
             files.ClearError();
         }},
        {"DirIterator: open", "false",
         [](Trial& trial) {
             DirIterator files("/dev", "null");
             trial.run([&] { return files.open(); });
             FAULTS_EXPECT(files.inError() == trial.failed());
             FAULTS_EXPECT(files.open() && files.getFirst(nullptr) != nullptr);
         }},
        {"DirIterator: getFirst without the directory", "same",
         [](Trial& trial) {
             DirIterator files("/nonexistent", "*");
             trial.run([&] { return files.getFirst(nullptr); });
             FAULTS_EXPECT(files.inError() && files.ErrorMessage() != nullptr);
         }},
        {"DirIterator: length", "0",
         [](Trial& trial) {
             DirIterator files("/dev", "*");
             trial.run([&] { return files.length("null"); });
             FAULTS_EXPECT(files.length("null") == 1);
         }},
        {"DirIterator: setPattern", "same",
         [](Trial& trial) {
             DirIterator files("/dev", "*");
             trial.run([&] { files.setPattern("null"); });
             files.setPattern("null");
             FAULTS_EXPECT(files.getFirst(nullptr) != nullptr);
         }},
        {"DirIterator: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<DirIterator> files(std::in_place, "/dev", "null");
             files->getFirst(nullptr);
             trial.run([&] {
                 const bool whole = files->getIndex() == 0 && files->getType() == 0 && files->getNext() == nullptr;
                 files->close();
                 files.reset();
                 return whole;
             });
         }},
    };
}

std::vector<Row> urlRows() {
    using utility::URL;
    static constexpr const char* text = "abc://node:8080/a%20b?x=1";
    return {
        {"URL: constructor from a text", "same",
         [](Trial& trial) {
             std::optional<URL> url;
             trial.run([&] { url.emplace(text); });
             url->SetURL(text);
             FAULTS_EXPECT(std::strcmp(url->GetPath(), "/a b") == 0);
         }},
        {"URL: constructor from parts", "same",
         [](Trial& trial) {
             construct<URL>(trial, "abc", "node", "/path", "query");
         }},
        {"URL: copy constructor", "same",
         [](Trial& trial) {
             const URL original(text);
             construct<URL>(trial, original);
         }},
        {"URL: assignment", "same",
         [](Trial& trial) {
             const URL original(text);
             URL url("x:y");
             trial.run([&] { url = original; });
             url = original;
             FAULTS_EXPECT(std::strcmp(url.GetPath(), "/a b") == 0);
         }},
        {"URL: setters", "same",
         [](Trial& trial) {
             URL url(nullptr);
             trial.run([&] {
                 url.SetScheme("abc");
                 url.SetAuthority("node");
                 url.SetPath("/path");
                 url.SetQuery("query");
             });
             url.SetPath("/other");
             FAULTS_EXPECT(std::strcmp(url.GetPath(), "/other") == 0);
         }},
        {"URL: SetURL", "same",
         [](Trial& trial) {
             URL url(nullptr);
             trial.run([&] { url.SetURL(text); });
             url.SetURL(text);
             FAULTS_EXPECT(std::strcmp(url.GetValue(), "abc://node:8080/a b?x=1") == 0);
         }},
        {"URL: GetValue", "null",
         [](Trial& trial) {
             URL url(nullptr);
             const std::string path(3000, 'p');
             url.SetPath(path.c_str());
             trial.run([&] { return url.GetValue(); });
             FAULTS_EXPECT(url.GetValue() != nullptr);
         }},
        {"URL: decodeAndAlloc", "null",
         [](Trial& trial) {
             URL url(nullptr);
             trial.run([&] { return url.decodeAndAlloc("%41", 3); });
             FAULTS_EXPECT(url.decodeAndAlloc("%41", 3)[0] == 'A');
         }},
        {"URL: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<URL> url(std::in_place, text);
             trial.run([&] {
                 const bool whole = url->GetScheme() != nullptr && url->GetAuthority() != nullptr &&
                                    url->GetPath() != nullptr && url->GetQuery() != nullptr && url->getName() == 630 &&
                                    url->getNameString() != nullptr;
                 url->clear();
                 url.reset();
                 return whole;
             });
         }},
    };
}

// A root folder with a password file, which the service uses for the life of the process.
struct Root {
    test::TemporaryDirectory folder;

    Root() {
        mkdir(folder.path("etc").c_str(), 0700);
        setenv("VX_ROOT", folder.path().c_str(), 1);
        if (utility::PWService::getFileName() != folder.path("etc/passwd")) {
            std::fprintf(stderr, "the password file is not the one of this test\n");
            std::exit(2);
        }
        write();
    }
    void write() const {
        folder.write("etc/passwd", text);
    }
    bool isUnchanged() const {
        return folder.read("etc/passwd") == text;
    }

    static constexpr const char* text = "root:x:0:0:root:/root:/bin/sh\nguest:x:1000:1000::/home/guest:/bin/sh\n";
};

const Root& root() {
    static const Root made;
    return made;
}

std::vector<Row> passwordRows() {
    using utility::PW;
    using utility::PWService;
    root();
    return {
        {"PWService: getUser", "same null",
         [](Trial& trial) {
             trial.run([] { return PWService::getUser("guest"); });
             FAULTS_EXPECT(PWService::getUser("guest") != nullptr && PWService::getUser("guest")->getUid() == 1000);
         }},
        {"PWService: getHighestUID", "same 0",
         [](Trial& trial) {
             trial.run([] { return PWService::getHighestUID(); });
         }},
        {"PWService: putUser", "same bad_alloc",
         [](Trial& trial) {
             PW user;
             user.m_passwd.pw_name = user.newString("guest");
             user.m_passwd.pw_dir = user.newString("/");
             trial.run([&] { PWService::putUser(&user); });
             // One of the two whole texts.
             FAULTS_EXPECT(root().isUnchanged() || PWService::getUser("guest")->getDir()[1] == '\0');
             FAULTS_EXPECT(PWService::getUser("root") != nullptr && PWService::getUser("guest") != nullptr);
             root().write();
         }},
        {"PWService: delUser", "same bad_alloc",
         [](Trial& trial) {
             PW user;
             user.m_passwd.pw_name = user.newString("guest");
             trial.run([&] { PWService::delUser(&user); });
             FAULTS_EXPECT(root().isUnchanged() || PWService::getUser("guest") == nullptr);
             FAULTS_EXPECT(PWService::getUser("root") != nullptr);
             root().write();
         }},
        {"PWService: encryptPassword", "false",
         [](Trial& trial) {
             trial.run([] {
                 char out[64] = "x";
                 return PWService::encryptPassword("secret", out, sizeof out) == out && out[0] == '$';
             });
         }},
        {"PW: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 PW user;
                 user.m_passwd.pw_name = user.newString("guest");
                 user.dump();
                 const bool whole = user.getUserName() != nullptr && user.getPassword() == nullptr &&
                                    user.getUid() == 0 && user.getGid() == 0 && user.getRealName() == nullptr &&
                                    user.getDir() == nullptr && user.getShell() == nullptr && user.used() == 6 &&
                                    PWService::getFileName() != nullptr;
                 user.reset();
                 return whole;
             });
         }},
    };
}

} // namespace

std::vector<Row> environmentRows() {
    std::vector<Row> rows = argumentRows();
    add(rows, optionRows());
    add(rows, pathRows());
    add(rows, urlRows());
    add(rows, passwordRows());
    return rows;
}

} // namespace faults
