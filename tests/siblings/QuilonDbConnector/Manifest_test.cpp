#include "Manifest.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Checksum.h"
#include "failure_message.h"

namespace {

using testing::StartsWith;

Manifest MakeManifest()
{
  Manifest manifest;
  manifest.generation  = 12;
  manifest.nextSegment = 32;
  manifest.nextBlock   = 5;
  manifest.segments    = {{30, 1, 29, 90112, 88064, 1936, 0x0123456789abcdefu}, {31, 31, 31, 4096, 512, 100, 7}};
  return manifest;
}

// A manifest's text with a checksum that fits.
std::string Seal(const std::string& text)
{
  return text + "checksum " + FormatChecksum(GetChecksum(text.data(), text.size())) + '\n';
}

std::string Decode(const std::string& text)
{
  return MessageOf([&] { DecodeManifest(text, "a.fed/manifest"); });
}

}  // namespace

TEST(Manifest, IsTextThatAPersonReads)
{
  EXPECT_EQ(EncodeManifest(MakeManifest()), Seal("quilon-database 2\n"
                                                 "generation 12\n"
                                                 "next-segment 32\n"
                                                 "next-block 5\n"
                                                 "segment 30 1 29 90112 88064 1936 0123456789abcdef\n"
                                                 "segment 31 31 31 4096 512 100 0000000000000007\n"));
}

TEST(Manifest, TextReadsBackToTheSameManifest)
{
  EXPECT_EQ(DecodeManifest(EncodeManifest(MakeManifest()), "manifest").manifest, MakeManifest());
  EXPECT_EQ(DecodeManifest(EncodeManifest({}), "manifest").manifest, Manifest());
}

TEST(Manifest, EveryOtherByteAndEveryShorterTextIsRefused)
{
  const std::string text = EncodeManifest(MakeManifest());
  for (std::size_t i = 0; i < text.size(); ++i) {
    EXPECT_THAT(Decode(text.substr(0, i)), StartsWith("a.fed/manifest: ")) << i;
    for (int bit = 0; bit < 8; ++bit) {
      std::string damaged = text;
      damaged[i]          = static_cast<char>(damaged[i] ^ (1 << bit));
      EXPECT_THAT(Decode(damaged), StartsWith("a.fed/manifest: ")) << i;
    }
  }
  std::string first       = text;
  first[16]               = '1';
  const std::size_t start = first.rfind("checksum ");
  EXPECT_EQ(Decode(Seal(first.substr(0, start)) + "\n"), "a.fed/manifest: damaged in line 8, expected the end");
}

TEST(Manifest, OtherFormatVersionIsRefusedWithBothVersionsNamed)
{
  EXPECT_EQ(Decode("quilon-database 4\nwhatever comes then\n"),
            "a.fed/manifest: the database has format version 4, this program reads versions 1 to 3");
}

TEST(Manifest, SegmentsOutOfOrderAreRefused)
{
  const std::string head = "quilon-database 2\ngeneration 1\nnext-segment 9\nnext-block 1\n";
  for (const char* segments : {"segment 2 2 2 1 1 1 0\nsegment 1 1 1 1 1 1 0\n",  // descending
                               "segment 3 1 2 1 1 1 0\nsegment 4 2 2 1 1 1 0\n",  // overlapping
                               "segment 3 2 1 1 1 1 0\n",                         // first behind last
                               "segment 1 1 2 1 1 1 0\n",                         // stands for later ones
                               "segment 9 9 9 1 1 1 0\n",                         // not below the next number
                               "segment 0 0 0 1 1 1 0\n"})
    EXPECT_THAT(Decode(Seal(head + segments)), StartsWith("a.fed/manifest: damaged in line ")) << segments;
}

TEST(Manifest, WhatDoesNotParseIsNamedByLine)
{
  EXPECT_EQ(Decode(Seal("quilon-database 2\ngeneration x\n")), "a.fed/manifest: damaged in line 2, expected a number");
  EXPECT_EQ(Decode(Seal("quilon-database 2\ngeneration 1\nnext-block 3\n")),
            "a.fed/manifest: damaged in line 3, expected \"next-segment\"");
  EXPECT_EQ(Decode(Seal("quilon-database 2\ngeneration 1 \n")),
            "a.fed/manifest: damaged in line 2, expected the end of the line");
  EXPECT_EQ(Decode(Seal("quilon-database 2\ngeneration 1\nnext-segment 1\nnext-block 1\nmore\n")),
            "a.fed/manifest: damaged in line 5, expected \"checksum\"");
  EXPECT_EQ(Decode("hello"), "a.fed/manifest: not the manifest of a database, or damaged");
  EXPECT_EQ(Decode(""), "a.fed/manifest: not the manifest of a database, or damaged");
}

TEST(Manifest, SegmentNamesHaveSixDigitsOrMore)
{
  EXPECT_EQ(GetSegmentName(12), "segment-000012.h5");
  EXPECT_EQ(GetSegmentName(12345678), "segment-12345678.h5");
  EXPECT_TRUE(IsSegmentName("segment-000012.h5"));
  EXPECT_TRUE(IsSegmentName("segment-12345678.h5"));
  for (const char* name : {"segment-12.h5", "segment-00001x.h5", "segment-000012.h5~", "xsegment-000012.h5", "manifest",
                           "segment-.h5", ""})
    EXPECT_FALSE(IsSegmentName(name)) << name;
}
