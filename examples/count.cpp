// Counts the words of the standard input and prints them in alphabetical order.

#include <cctype>
#include <cstdio>

#include "ut_FastSortedStringDirectory.h"
#include "ut_FastStringDirectory.h"
#include "ut_FileInputStream.h"
#include "ut_ParameterList.h"
#include "ut_Ranges.h"
#include "ut_UIntArray.h"
#include "ut_VirtualGetStream.h"

int main() {
    const int lineSize = 1024;
    // The slot of a word is the index of its count.
    utility::FastStringDirectory words(0);
    utility::UIntArray counts(0);

    utility::FileInputStream input("/dev/stdin");
    utility::VirtualGetStream in(input, lineSize, 0, lineSize / 2, nullptr);
    if (!in.StartInputStream())
        return 1;
    while (char* line = in.ReadLine()) {
        utility::ParameterList list(line, ' ');
        char word[lineSize + 1];
        while (list.nextToken(word) != nullptr) {
            int slot = words.Find(word);
            if (slot < 0) {
                slot = words.Add(word);
                if (slot < 0)
                    return 1; // 32,767 words
                counts.Append(0);
            }
            ++counts[static_cast<unsigned int>(slot)];
        }
    }

    utility::FastSortedStringDirectory sorted(0);
    for (const char* word : utility::range(words))
        sorted.Add(word);
    for (const char* word : utility::range(sorted))
        std::printf("%-8s %u\n", word, counts[static_cast<unsigned int>(words.Find(word))]);

    unsigned int total = 0;
    for (unsigned int count : utility::range(counts))
        total += count;
    std::printf("%u words, %u different\n", total, counts.length());
    return 0;
}
