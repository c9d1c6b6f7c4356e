// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2EventReader.hpp"

#include <gtest/gtest.h>

#include "hosts/lv2/LV2Sequence.hpp"

namespace quillo {
namespace {

using namespace test;

const LV2_URID sequenceType = lv2Id(LV2_ATOM__Sequence);
const LV2_URID type = lv2Id("urn:test:type");

TEST(LV2EventReader, AnEventWithoutBytesAtTheEndIsReadToo) {
    LV2Sequence sequence;
    sequence.add(3, type, {1, 2}).add(5, type, {});
    LV2EventReader reader(sequence.data(), sequenceType);
    EXPECT_EQ(copyOf(reader.next()->body), (Bytes{1, 2}));
    const auto last = reader.next();
    ASSERT_TRUE(last);
    EXPECT_EQ(last->time, 5);
    EXPECT_EQ(last->type, type);
    EXPECT_TRUE(last->body.empty());
    EXPECT_FALSE(reader.next());
}

}  // namespace
}  // namespace quillo
