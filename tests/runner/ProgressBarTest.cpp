#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "runner/ProgressBar.h"

namespace {

std::string Drawn(std::FILE* file) {
    std::fflush(file);
    std::rewind(file);
    std::string text;
    char buffer[256];
    size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof buffer, file)) > 0) text.append(buffer, n);
    return text;
}

TEST(ProgressBar, RendersTheShareDone) {
    EXPECT_EQ(ffrunner::ProgressBar::Render("bars", 50, 100, 10), "bars [#####.....]  50%  50/100");
    EXPECT_EQ(ffrunner::ProgressBar::Render("bars", 0, 7, 4), "bars [....]   0%  0/7");
    EXPECT_EQ(ffrunner::ProgressBar::Render("bars", 9, 7, 4), "bars [####] 100%  7/7");
    EXPECT_EQ(ffrunner::ProgressBar::Render("bars", 0, 0, 2), "bars [##] 100%  0/0");
}

TEST(ProgressBar, StaysQuietForTheFirstSecond) {
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    {
        ffrunner::ProgressBar bar("run", true, file);
        bar.Update(1, 10);
    }
    EXPECT_EQ(Drawn(file), "");
    std::fclose(file);
}

TEST(ProgressBar, DrawsAfterASecondAndWipesAtTheEnd) {
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    {
        ffrunner::ProgressBar bar("run", true, file);
        bar.StartedAgo(2);
        bar.Update(5, 10);
        bar.Update(6, 10);  // within a tenth of a second: not redrawn
        bar.Update(10, 10);
    }
    const std::string text = Drawn(file);
    EXPECT_EQ(text.substr(0, 48), "\rrun [###############...............]  50%  5/10");
    EXPECT_NE(text.find("\rrun [##############################] 100%  10/10"), std::string::npos);
    EXPECT_EQ(text.find("6/10"), std::string::npos);
    EXPECT_EQ(text.back(), '\r');
    std::fclose(file);
}

TEST(ProgressBar, NeverDrawsWhenDisabled) {
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    {
        ffrunner::ProgressBar bar("run", false, file);
        bar.StartedAgo(5);
        bar.Update(5, 10);
    }
    EXPECT_EQ(Drawn(file), "");
    std::fclose(file);
}

}  // namespace
