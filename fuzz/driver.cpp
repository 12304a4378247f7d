// Runs a fuzz target on its seeds and on RUNS random changes of them, without libFuzzer: driver RUNS SEED_FOLDER
//
// The generator of the changes has a fixed seed, so that a failure repeats; VXUT_TEST_SEED sets another one.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <dirent.h>
#include <sys/stat.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

typedef std::vector<std::uint8_t> Input;

constexpr std::size_t longestInput = 4096;

Input readInput(const std::string& path) {
    Input input(longestInput);
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr)
        return Input();
    input.resize(std::fread(input.data(), 1, input.size(), file));
    std::fclose(file);
    return input;
}

std::vector<Input> readSeeds(const std::string& folder) {
    std::vector<Input> seeds;
    DIR* directory = opendir(folder.c_str());
    if (directory == nullptr)
        return seeds;
    while (const dirent* entry = readdir(directory)) {
        struct stat status = {};
        const std::string path = folder + '/' + entry->d_name;
        if (stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode))
            seeds.push_back(readInput(path));
    }
    closedir(directory);
    return seeds;
}

std::size_t below(std::mt19937& random, std::size_t bound) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random);
}

// Overwrites, inserts, removes or repeats a few pieces of the input.
void change(Input* input, std::mt19937& random) {
    const std::size_t times = 1 + below(random, 6);
    for (std::size_t i = 0; i < times; ++i) {
        const std::size_t at = below(random, input->size() + 1);
        const auto place = input->begin() + static_cast<std::ptrdiff_t>(at);
        const std::uint8_t byte = static_cast<std::uint8_t>(below(random, 256));
        switch (below(random, 4)) {
        case 0:
            input->insert(place, 1 + below(random, 8), byte);
            break;
        case 1:
            if (at < input->size())
                input->erase(place);
            break;
        case 2:
            if (at < input->size())
                *place = byte;
            break;
        default:
            const Input piece(input->begin(), place);
            if (input->size() + piece.size() <= longestInput)
                input->insert(input->end(), piece.begin(), piece.end());
        }
    }
}

void run(const Input& input) {
    // A copy of exactly this size, so that a sanitizer reports each read past its end.
    const Input exact(input);
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s RUNS SEED_FOLDER\n", argv[0]);
        return 2;
    }
    const std::vector<Input> seeds = readSeeds(argv[2]);
    if (seeds.empty()) {
        std::fprintf(stderr, "%s: no seeds\n", argv[2]);
        return 1;
    }
    const char* start = std::getenv("VXUT_TEST_SEED");
    std::mt19937 random(static_cast<unsigned int>(start != nullptr ? std::strtoul(start, nullptr, 10) : 1));
    for (const Input& seed : seeds)
        run(seed);
    const long runs = std::strtol(argv[1], nullptr, 10);
    for (long i = 0; i < runs; ++i) {
        Input input = seeds[below(random, seeds.size())];
        change(&input, random);
        run(input);
    }
    std::printf("%zu seeds and %ld changed inputs\n", seeds.size(), runs);
    return 0;
}
