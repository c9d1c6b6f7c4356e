// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/EditorBridge.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

#include "hosts/auv3/EditorDouble.hpp"
#include "hosts/auv3/MainThread.hpp"
#include "hosts/auv3/MainThreadDouble.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::HasSubstr;

const std::vector oneRule{rule(onNoteOn(), send(noteOn(1, 2, 3)), "one")};

class EditorBridgeTest : public testing::Test {
protected:
    EditorBridgeTest() { editorDouble() = {}; }
    ~EditorBridgeTest() override {
        bridge.reset();
        runMainThread();
    }

    void load() { bridge->viewDidLoad(&view); }

    /// Makes the unit refuse a state, of which the user is told.
    void fail() {
        EXPECT_FALSE(unit.restore([] { return StateDictionary(); }));
    }

    int view = 0;
    UnitBridge unit;
    std::unique_ptr<EditorBridge> bridge = std::make_unique<EditorBridge>();
};

TEST_F(EditorBridgeTest, TheEditorOpensInTheViewAndTakesItsSize) {
    bridge->viewDidLayout(640.0, 480.0);
    load();
    EXPECT_EQ(editorDouble().parentView, &view);
    EXPECT_EQ(editorDouble().controller, &bridge->controller());
    bridge->viewDidLayout(640.9, 480.0);
    EXPECT_EQ(editorDouble().width, 640);
    EXPECT_EQ(editorDouble().height, 480);
}

TEST_F(EditorBridgeTest, AUnitAndAViewAreConnectedInEitherOrder) {
    bridge->adopt(unit);
    EXPECT_TRUE(bridge->controller().needsConnection());
    load();
    EXPECT_FALSE(bridge->controller().needsConnection());

    bridge = std::make_unique<EditorBridge>();
    load();
    EXPECT_TRUE(bridge->controller().needsConnection());
    bridge->adopt(unit);
    EXPECT_FALSE(bridge->controller().needsConnection());
    EXPECT_EQ(bridge->controller().audioUnit(), unit.unit());
}

TEST_F(EditorBridgeTest, AUnitMadeElsewhereIsConnectedByTheMainThread) {
    load();
    std::thread([this] { bridge->adopt(unit); }).join();
    EXPECT_TRUE(bridge->controller().needsConnection());
    EXPECT_EQ(runMainThread(), 1U);
    EXPECT_FALSE(bridge->controller().needsConnection());
}

TEST_F(EditorBridgeTest, ABridgeMadeElsewhereStillKnowsTheMainThread) {
    std::thread([this] { bridge = std::make_unique<EditorBridge>(); }).join();
    load();
    bridge->adopt(unit);
    EXPECT_FALSE(bridge->controller().needsConnection());
}

TEST_F(EditorBridgeTest, ARestoredStateReachesTheModel) {
    unit.unit()->processor->setRules(oneRule);
    const auto document = unit.stateDocument(true).value();
    unit.unit()->processor->setRules({});
    bridge->adopt(unit);
    load();
    EXPECT_TRUE(unit.restore([&] { return StateDictionary{{stateKey, document}}; }));
    EXPECT_GT(runMainThread(), 0U);
    ASSERT_EQ(bridge->controller().model()->rules().size(), 1U);
    EXPECT_EQ(bridge->controller().model()->rules()[0].rule.name, "one");
}

TEST_F(EditorBridgeTest, WhatGoesWrongIsAnAlertOnTheMainThread) {
    bridge->adopt(unit);
    std::thread([this] { fail(); }).join();
    EXPECT_EQ(bridge->controller().model()->alertErrorMessage(), std::nullopt);
    runMainThread();
    EXPECT_THAT(bridge->controller().model()->alertErrorMessage().value_or(""), HasSubstr("is not taken"));
}

TEST_F(EditorBridgeTest, AUnitThatOutlivesTheEditorTellsNobody) {
    const std::weak_ptr model = bridge->controller().model();
    bridge->adopt(unit);
    load();
    fail();
    bridge.reset();
    runMainThread();
    fail();
    runMainThread();
    EXPECT_TRUE(model.expired());
}

TEST_F(EditorBridgeTest, WithoutAnEditorTheUnitIsConnectedAllTheSame) {
    editorDouble().fails = true;
    bridge->adopt(unit);
    load();
    bridge->viewDidLayout(640.0, 480.0);
    EXPECT_FALSE(bridge->controller().needsConnection());
    EXPECT_FALSE(editorDouble().open);
}

TEST_F(EditorBridgeTest, ABridgeThatGoesOnTheMainThreadTakesItsEditorAlong) {
    load();
    bridge.reset();
    EXPECT_FALSE(editorDouble().open);
}

TEST_F(EditorBridgeTest, ABridgeThatGoesElsewhereLeavesItsEditorToTheMainThread) {
    load();
    std::thread([this] { bridge.reset(); }).join();
    EXPECT_TRUE(editorDouble().open);
    runMainThread();
    EXPECT_FALSE(editorDouble().open);
    EXPECT_TRUE(editorDouble().diedOnMainThread);
}

TEST(MainThread, ABlockThatThrowsEndsTheDrainingAndNothingElse) {
    processMainQueue().async([] { throw std::runtime_error("lost"); });
    EXPECT_EQ(runMainThread(), 1U);
    bool ran = false;
    processMainQueue().async([&ran] { ran = true; });
    EXPECT_EQ(runMainThread(), 1U);
    EXPECT_TRUE(ran);
}

}  // namespace
}  // namespace quillo
