#include "Core/CApplication.h"

#include <stdlib.h>

#include <filesystem>
#include <thread>

#include "Core/CNotifyServer.h"
#include "Tests/Core/LogCapture.h"
#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

const std::vector<CCreatorRow> kRows = {{"core:object", &createObject<CObject>, nullptr}};

TEST(Application, StartsWithALineAndEndsWithALine) {
    CLogCapture log;
    {
        CTestApplication application(kRows);
        EXPECT_TRUE(CApplication::exists());
        EXPECT_EQ(log.lines, (std::vector<std::string>{"Initializing application..."}));
    }
    EXPECT_FALSE(CApplication::exists());
    EXPECT_EQ(CApplication::sharedRoot(), nullptr);
    EXPECT_EQ(log.lines.back(), "Finalizing application...");
}

TEST(Application, MayBeginAnewAfterItsEnd) {
    for (int round = 0; round < 3; ++round) {
        CTestApplication application(kRows, {{"core:object", "project"}});
        EXPECT_NE(CApplication::sharedRoot()->findObject("project"), nullptr);
    }
}

TEST(Application, HasNoRootsWithoutStart) {
    CObject* root = nullptr;
    EXPECT_EQ(consumed(CApplication::initRootObject(root)).find("No shared object created.\r\n"), 0u);
    EXPECT_EQ(root, nullptr);
}

TEST(Application, EachRootHasAServerOfItsOwn) {
    CTestApplication application(kRows);
    auto first = application.makeRoot();
    auto second = application.makeRoot();
    ASSERT_NE(first->notifyServer(), nullptr);
    EXPECT_NE(first->notifyServer(), second->notifyServer());
    EXPECT_EQ(first->root(), first.get());
    EXPECT_EQ(first->parent(), nullptr);
}

TEST(Application, OneInstanceOutlivesAnother) {
    CTestApplication application(
        kRows, {testTemplate("plugin", "core:object", {{"x", "1"}}), {"core:object", "audio", {{"cvt", "gain"}}}});
    auto first = application.makeRoot();
    auto second = application.makeRoot();
    CObject* plugin = nullptr;
    ASSERT_EQ(consumed(first->createChild(plugin, "plugin", "plugin", true)), "");
    ASSERT_EQ(consumed(second->createChild(plugin, "plugin", "plugin", true)), "");
    first.reset();
    EXPECT_EQ(second->findObject("plugin")->getAttrInt("x"), 1);
    EXPECT_EQ(second->findObject("shared::audio")->getAttrString("cvt"), "gain");
    ASSERT_EQ(consumed(second->createChild(plugin, "plugin", "plugin", true)), "");
    EXPECT_EQ(plugin->name(), "plugin#1");
}

TEST(Application, TheSharedTreeIsReadOnlyOnceItIsBuilt) {
    CTestApplication application(kRows, {{"core:object", "audio", {{"v", "1.5"}}, {{"core:object", "inner"}}}});
    CObject* inner = CApplication::sharedRoot()->findObject("audio.inner");
    EXPECT_TRUE(CApplication::sharedRoot()->isReadOnly());
    EXPECT_TRUE(inner->isReadOnly());
    EXPECT_EQ(consumed(inner->setAttribute("x", "1")), "");
    EXPECT_FALSE(inner->hasAttr("x"));
}

TEST(Application, ManyThreadsReadTheSharedTree) {
    CTestApplication application(kRows, {testTemplate("plugin", "core:object", {{"x", "{/shared::audio v}"}}),
                                         {"core:object", "audio", {{"v", "1.5"}, {"w", "word"}}}});
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&application] {
            for (int round = 0; round < 50; ++round) {
                auto root = application.makeRoot();
                CObject* plugin = nullptr;
                EXPECT_EQ(consumed(root->createChild(plugin, "plugin", "plugin", true)), "");
                EXPECT_EQ(plugin->getAttrReal("x"), 1.5);
                EXPECT_EQ(root->findObject("shared::audio")->getAttrReal("v"), 1.5);
                EXPECT_EQ(root->findObject("shared::audio")->getAttrInt("w"), 0);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(Application, AFailureOfACreatorRowEndsTheStart) {
    const CCreatorRow rows[] = {{"a", &createObject<CObject>, nullptr}, {"a", &createObject<CObject>, nullptr}};
    CLocalData::instance().setFileAccess(false);
    std::string error = consumed(CApplication::start(CProductTables{rows, 2, nullptr}));
    CLocalData::instance().reset();
    EXPECT_EQ(error.find("Creator for 'a' has already been registered.\r\n"), 0u) << error;
    EXPECT_NE(error.find("Sources/Core/Application( "), std::string::npos) << error;
    EXPECT_FALSE(CApplication::exists());
    CApplication::finish();
}

TEST(Application, AMissingSharedTreeEndsTheStart) {
    CLocalData::instance().setFileAccess(false);
    CProductTables tables{kRows.data(), 1, nullptr};
    tables.sharedTree = "Nothing.xml";
    std::string error = consumed(CApplication::start(tables));
    EXPECT_EQ(error.find("Unable to open file 'Nothing.xml'"), 0u) << error;
    EXPECT_FALSE(CApplication::exists());
    CApplication::finish();
    CLocalData::instance().reset();
}

std::string classesName;

CError* noteName(const CString& name) {
    classesName = name.toUtf8();
    return nullptr;
}

CError* refuse(const CString&) {
    TARV_FAIL("@tarvstr_Test_refuse_Refused No windows here.");
}

CProductTables bareTables() {
    CProductTables tables{kRows.data(), 1, nullptr};
    tables.sharedTree = nullptr;
    return tables;
}

TEST(Application, WindowClassesAreNamedAfterMakerAndProduct) {
    CProductTables tables = bareTables();
    tables.registerWindowClasses = &noteName;
    CLocalData::instance().setFileAccess(false);
    EXPECT_EQ(consumed(CApplication::start(tables)), "");
    EXPECT_EQ(classesName, "TarveloBrindle XEQ");
    CApplication::finish();
    CLocalData::instance().reset();
}

TEST(Application, WindowClassesThatFailEndTheStart) {
    CLogCapture log;
    CProductTables tables = bareTables();
    tables.registerWindowClasses = &refuse;
    CLocalData::instance().setFileAccess(false);
    std::string error = consumed(CApplication::start(tables));
    EXPECT_EQ(error.find("No windows here.\r\n"), 0u) << error;
    EXPECT_NE(error.find("Sources/Core/Application( "), std::string::npos) << error;
    EXPECT_FALSE(CApplication::exists());
    EXPECT_TRUE(log.lines.empty()) << "the application was not begun";
    CApplication::finish();
    CLocalData::instance().reset();
}

TEST(Application, StartsOnceHoweverManyThreadsAsk) {
    CLogCapture log;
    CLocalData::instance().setFileAccess(false);
    CProductTables tables = bareTables();
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            CApplication::ensureStarted(tables);
            EXPECT_TRUE(CApplication::exists());
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(log.lines, (std::vector<std::string>{"Initializing application..."}));
    CApplication::finish();
    CLocalData::instance().reset();
}

TEST(Application, AFailedStartIsShownAndNotTriedAgain) {
    CLogCapture log;
    CLocalData::instance().setFileAccess(false);
    CProductTables failing = bareTables();
    failing.sharedTree = "Nothing.xml";
    testing::internal::CaptureStderr();
    CApplication::ensureStarted(failing);
    CApplication::ensureStarted(bareTables());
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Nothing.xml"), std::string::npos);
    EXPECT_FALSE(CApplication::exists());
    CApplication::finish();
    CApplication::ensureStarted(bareTables());
    EXPECT_TRUE(CApplication::exists()) << "a new life after the end";
    CApplication::finish();
    CLocalData::instance().reset();
}

struct CScaleCase {
    const char* stored;
    double scale;
};

TEST(Application, ReadsTheScaleOfTheEditorAtTheStart) {
    std::string folder = testing::TempDir() + "tarv-scale";
    setenv("TARV_DATA_ROOT", folder.c_str(), 1);
    const CScaleCase cases[] = {{nullptr, 1.0},        {"1.25", 1.25}, {"0,8", 0.8},   {"0.5", 0.5}, {"4", 4.0},
                                {"0.499", 1.0},        {"4.001", 1.0}, {"-1.0", 1.0},  {"0", 1.0},   {"1e9", 1.0},
                                {"999999999999", 1.0}, {"large", 1.0}, {"1.25x", 1.0}, {"-", 1.0},   {"", 1.0}};
    for (const CScaleCase& c : cases) {
        std::filesystem::remove_all(folder);
        if (c.stored) {
            CLocalData().writeText("ui-scale", c.stored);
        }
        CLocalData::instance().reset();
        ASSERT_EQ(consumed(CApplication::start(bareTables())), "");
        EXPECT_EQ(CApplication::uiScale(), c.scale) << (c.stored ? c.stored : "(nothing)");
        CApplication::finish();
    }
    std::filesystem::remove_all(folder);
    unsetenv("TARV_DATA_ROOT");
    CLocalData::instance().reset();
}

}  // namespace
}  // namespace tarv
