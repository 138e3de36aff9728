#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QuilonOnfEngine/OnfGroupsFile.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>
#include <QuilonOnfSpecification/FED_OnfInfoPool.h>

#include "support.h"

namespace conformance {
namespace {

const FED_OnfMetaData& InfoOf(int onf) { return FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(onf)); }

TEST(OnfConformance, MetaDataIsAPlainValue)
{
  const FED_OnfMetaData made(1, "name", "D", "text");
  const FED_OnfMetaData copy = made;
  EXPECT_EQ(copy.GetEntityKind(), 1);
  EXPECT_EQ(copy.GetName(), "name");
  EXPECT_EQ(copy.GetRecordFormat(), "D");
  EXPECT_EQ(copy.GetDescription(), "text");
}

TEST(OnfConformance, TheIdsThatTheLibraryNamesAreInTheCatalogue)
{
  EXPECT_GE(InfoOf(FED_OnfId_ScalarHistory).GetEntityKind(), 15);  // addressed by substep
  EXPECT_EQ(InfoOf(FED_OnfId_ScalarHistory).GetRecordFormat(), "D");
  EXPECT_EQ(InfoOf(FED_OnfId_ElementNodes).GetEntityKind(), kElementKind);
  for (const int onf : {590, 591, 592, 597, 598, 599}) {
    EXPECT_EQ(InfoOf(onf).GetEntityKind(), kElementKind) << onf;
    EXPECT_EQ(InfoOf(onf).GetRecordFormat(), "") << onf;  // the caller's affair
  }
}

TEST(OnfConformance, DerivedKindsAreOfTheKindOfTheirSources)
{
  const int pairs[][2] = {{560, 561}, {520, 521}, {570, 571}, {530, 531}, {540, 903}, {541, 913}};
  for (const auto& pair : pairs) EXPECT_EQ(InfoOf(pair[0]).GetEntityKind(), InfoOf(pair[1]).GetEntityKind()) << pair[0];
  for (const int onf : {560, 520, 570, 530}) {
    EXPECT_EQ(InfoOf(onf).GetRecordFormat(), "V") << onf;
    EXPECT_EQ(InfoOf(onf + 1).GetRecordFormat(), "T") << onf + 1;
  }
  for (const int onf : {540, 541, 903, 913}) EXPECT_EQ(InfoOf(onf).GetRecordFormat(), "D") << onf;
}

TEST(OnfConformance, UserKindsAreToldByTheHundred)
{
  struct Row
  {
    int         onf;
    int         kind;
    const char* format;
  };
  const Row rows[] = {{kUserScalar, 0, "D"},  {kUserVector, 0, "V"},   {kUserTensor, 0, "T"},
                      {kUserElement, 1, "D"}, {kUserHistory, 15, "D"}, {kUserMatrix, 16, "IIbDbLbLb"}};
  for (const Row& row : rows) {
    for (const int onf : {row.onf, row.onf + 99}) {
      EXPECT_EQ(InfoOf(onf).GetEntityKind(), row.kind) << onf;
      EXPECT_EQ(InfoOf(onf).GetRecordFormat(), row.format) << onf;
    }
  }
}

TEST(OnfConformance, AnIdThatNobodyKnowsHasAKindAndAName)
{
  for (const int onf : {kUnknown, 0, -5}) {
    EXPECT_EQ(InfoOf(onf).GetEntityKind(), 14) << onf;
    EXPECT_EQ(InfoOf(onf).GetName(), "onf-" + std::to_string(onf));
    EXPECT_EQ(InfoOf(onf).GetRecordFormat(), "") << onf;
  }
}

TEST(OnfConformance, MetaDataStaysWhereItIs)
{
  const FED_OnfMetaData* const first = &InfoOf(kUnknown);
  for (int onf = 3000; onf < 3200; ++onf) InfoOf(onf);
  EXPECT_EQ(&InfoOf(kUnknown), first);
}

TEST(RequestFileConformance, ADefaultRequestFileRequestsNothing)
{
  const OnfResultRequestFile requests;
  for (const int onf : {0, 520, 560, 1000}) EXPECT_FALSE(requests.typeIsRequested(onf)) << onf;
}

/// A host answers without a file.
class AnswersItself : public OnfResultRequestFile
{
public:
  bool typeIsRequested(int onf) const override { return onf == 520; }
};

TEST(RequestFileConformance, ADerivedClassAnswersItself)
{
  const AnswersItself         derived;
  const OnfResultRequestFile& requests = derived;
  EXPECT_TRUE(requests.typeIsRequested(520));
  EXPECT_FALSE(requests.typeIsRequested(530));
}

class RequestFileFolderConformance : public FolderTest
{};

TEST_F(RequestFileFolderConformance, TakesIdsNamesCommentsAndBlankLines)
{
  Write("requests", "# derived results\n\n520\n" + InfoOf(560).GetName() + "  # by name\n");
  const OnfResultRequestFile requests(Path("requests"));
  EXPECT_TRUE(requests.typeIsRequested(520));
  EXPECT_TRUE(requests.typeIsRequested(560));
  EXPECT_FALSE(requests.typeIsRequested(530));
}

TEST_F(RequestFileFolderConformance, CopiesKeepTheRequests)
{
  Write("requests", "520\n");
  const OnfResultRequestFile requests(Path("requests"));
  const OnfResultRequestFile copy(requests);
  OnfResultRequestFile       assigned;
  assigned = requests;
  EXPECT_TRUE(copy.typeIsRequested(520));
  EXPECT_TRUE(assigned.typeIsRequested(520));
}

TEST_F(RequestFileFolderConformance, ANameThatNoKindHasIsAFailureThatNamesIt)
{
  Write("requests", "520\nno-such-kind\n");
  try {
    const OnfResultRequestFile requests(Path("requests"));
    FAIL() << "nothing was thrown";
  } catch (const FED_Failure& failure) {
    EXPECT_NE(failure.GetMessage().find("requests"), std::string::npos) << failure.what();
    EXPECT_NE(failure.GetMessage().find("no-such-kind"), std::string::npos) << failure.what();
  }
}

TEST_F(RequestFileFolderConformance, AFileThatCannotBeReadIsAFailure)
{
  EXPECT_THROW(OnfResultRequestFile{Path("missing")}, FED_Failure);
}

TEST(GroupsFileConformance, WithoutAFileThereAreNoGroups) { EXPECT_TRUE(OnfGroupsFile().GetGroups().empty()); }

class GroupsFileFolderConformance : public FolderTest
{};

TEST_F(GroupsFileFolderConformance, GroupsOfNodesAndElementsHaveNamesAndRanges)
{
  Write("groups", "# held\nnodes SUPPORT\n5 17-26\n\nelements SUPPORT\n30-60:3\n");
  const OnfGroupsFile                      file(Path("groups"));
  const std::vector<OnfGroupsFile::Group>& groups = file.GetGroups();
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_EQ(groups[0].kind, OnfGroupsFile::Nodes);
  EXPECT_EQ(groups[0].name, "SUPPORT");
  EXPECT_NE(groups[0].place.find("groups:2"), std::string::npos) << groups[0].place;
  ASSERT_EQ(groups[0].ranges.size(), 2u);
  EXPECT_EQ(groups[0].ranges[0].first, 5);
  EXPECT_EQ(groups[0].ranges[0].last, 5);
  EXPECT_EQ(groups[0].ranges[1].last, 26);
  EXPECT_EQ(groups[0].ranges[1].step, 1);
  EXPECT_EQ(groups[1].kind, OnfGroupsFile::Elements);
  ASSERT_EQ(groups[1].ranges.size(), 1u);
  EXPECT_EQ(groups[1].ranges[0].first, 30);
  EXPECT_EQ(groups[1].ranges[0].step, 3);
}

TEST_F(GroupsFileFolderConformance, CopiesKeepTheGroups)
{
  Write("groups", "nodes A\n1\n");
  const OnfGroupsFile file(Path("groups"));
  const OnfGroupsFile copy(file);
  OnfGroupsFile       assigned;
  assigned = file;
  EXPECT_EQ(copy.GetGroups().size(), 1u);
  EXPECT_EQ(assigned.GetGroups().size(), 1u);
}

TEST_F(GroupsFileFolderConformance, WhatIsNoGroupIsAFailureThatNamesFileAndLine)
{
  Write("groups", "nodes A\n1\nx\n");
  try {
    const OnfGroupsFile groups(Path("groups"));
    FAIL() << "nothing was thrown";
  } catch (const FED_Failure& failure) {
    EXPECT_NE(failure.GetMessage().find("groups:3:"), std::string::npos) << failure.what();
  }
  EXPECT_THROW(OnfGroupsFile{Path("missing")}, FED_Failure);
}

}  // namespace
}  // namespace conformance
