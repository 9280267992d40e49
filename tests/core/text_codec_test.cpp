#include <gtest/gtest.h>

#include "library/text_codec.h"

using namespace vantrel::text;

TEST(TextCodec, Utf8To1252AndBack) {
    EXPECT_EQ(Utf8ToCp1252("R\xC3\xA9ti"), "R\xE9ti");
    EXPECT_EQ(Utf8ToCp1252("\xE2\x82\xAC 5"), "\x80 5");
    EXPECT_EQ(Utf8ToCp1252("\xE4\xB8\xAD"), "?") << "no place in 1252";
    EXPECT_EQ(Utf8ToCp1252("\xEF\xBB\xBFx"), "x") << "a byte-order mark is dropped";
    EXPECT_EQ(Cp1252ToUtf8("R\xE9ti \x80 \x93q\x94"), "R\xC3\xA9ti \xE2\x82\xAC \xE2\x80\x9Cq\xE2\x80\x9D");
    for (int b = 0; b < 256; ++b) {
        std::string one(1, static_cast<char>(b));
        EXPECT_EQ(Utf8ToCp1252(Cp1252ToUtf8(one)), one) << "byte " << b << " survives the round trip";
    }
}

TEST(TextCodec, TellsUtf8From1252) {
    EXPECT_FALSE(LooksLikeUtf8("plain ascii"));
    EXPECT_TRUE(LooksLikeUtf8("R\xC3\xA9ti"));
    EXPECT_FALSE(LooksLikeUtf8("R\xE9ti")) << "a lone 1252 byte is no UTF-8";
    EXPECT_FALSE(LooksLikeUtf8("\xC0\x80")) << "overlong forms are refused";
    EXPECT_FALSE(LooksLikeUtf8("\xED\xA0\x80")) << "surrogates are refused";
    EXPECT_EQ(AnyToCp1252("R\xE9ti"), "R\xE9ti");
    EXPECT_EQ(AnyToCp1252("R\xC3\xA9ti"), "R\xE9ti");
}
