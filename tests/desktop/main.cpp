#include <gmock/gmock.h>

#include <string_view>

void PlayAndDie();

int main(int nArguments, char** ppszArguments) {
    if (nArguments > 1 && std::string_view(ppszArguments[1]) == "--die") {
        PlayAndDie();
        return 1;
    }
    testing::InitGoogleMock(&nArguments, ppszArguments);
    return RUN_ALL_TESTS();
}
