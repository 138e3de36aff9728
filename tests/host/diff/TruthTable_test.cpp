// Small databases in pairs, each with the verdict that every policy is to give. The verdicts were found by hand.

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>

#include "diff/DatabaseComparison.h"
#include "diff/MeshMatching.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

using namespace quilon::diff;
using Fill = std::function<void(FED_Database&)>;

constexpr double kInf      = std::numeric_limits<double>::infinity();
constexpr double kNaN      = std::numeric_limits<double>::quiet_NaN();
constexpr double kDenormal = std::numeric_limits<double>::denorm_min();

constexpr int kNodeSetKind = 3;

struct Policy
{
  const char* rule;
  const char* matching;
};

// The columns of the table, in their order.
const Policy kPolicies[] = {
    {"library", "id"},
    {"exact", "id"},
    {"abs=0.25", "id"},
    {"rel=0.25", "id"},
    {"peak=0.25", "id"},
    {"ulps=1", "id"},
    {"abs=0.25 rel=0.25 any", "id"},
    {"abs=0.25 rel=0.25 all", "id"},
    {"library nan=equal", "id"},
    {"library nan=different", "id"},
    {"abs=0.25 nan=forbid", "id"},
    {"abs=0.25 mode-sign", "id"},
    {"abs=0.25", "index"},
    {"abs=0.25", "points"},
};

struct Row
{
  const char* name;
  Fill        a;
  Fill        b;
  const char* verdicts;  // S same, D different, T trouble; one for each policy, blanks between groups
};

std::string WithoutBlanks(std::string text)
{
  std::erase(text, ' ');
  return text;
}

char Verdict(const FED_Database& a, const FED_Database& b, const Policy& policy)
{
  ComparisonTerms terms;
  terms.rules.fallback       = ParseRule(policy.rule, "");
  const std::string matching = policy.matching;
  try {
    MeshMatch       mesh;
    MeshMatchReport report;
    if (matching == "points") {
      mesh       = MatchMeshes(a, b, 1e-6, "A", "B", report);
      terms.mesh = &mesh;
    }
    terms.matching = matching == "index" ? RecordMatcher::ByIndex : RecordMatcher::ById;
    return CompareDatabases(WholeDatabase(a), WholeDatabase(b), terms).IsSame() ? 'S' : 'D';
  } catch (const FED_Failure&) {
    return 'T';
  }
}

std::string Verdicts(const FED_Database& a, const FED_Database& b)
{
  std::string verdicts;
  for (const Policy& policy : kPolicies) verdicts += Verdict(a, b, policy);
  return verdicts;
}

FED_DataDescriptor Key(int onf, int analysis = 1, int substep = 1)
{
  FED_DataDescriptor key(0, static_cast<FED_OnfId>(onf));
  key.SetInteger(FED_DataDescriptor::LoadCase, 1);
  key.SetInteger(FED_DataDescriptor::Substep, substep);
  key.SetInteger(FED_DataDescriptor::Analysis, analysis);
  return key;
}

FED_DataDescriptor WithoutAnalysis(int onf)
{
  FED_DataDescriptor key = Key(onf, 0);
  key.mask &= ~(1u << FED_DataDescriptor::Analysis);
  return key;
}

FED_DataDescriptor InLayer(int layer)
{
  FED_DataDescriptor key = Key(514);
  key.SetInteger(FED_DataDescriptor::Layer, layer);
  return key;
}

struct NodeValue
{
  int    id;
  double value;
};

Fill ScalarsAt(const FED_DataDescriptor& key, const std::vector<NodeValue>& values)
{
  return [=](FED_Database& db) {
    FED_IdDataBlock view(db.GetOrCreateDataBlock(key, 0), db.GetIdMapsPool(), true);
    for (const NodeValue& node : values) view.SetScalar(node.id, node.value);
  };
}

// Temperatures of nodes.
Fill Scalars(const std::vector<NodeValue>& values) { return ScalarsAt(Key(514), values); }
// The temperature of node 1.
Fill Scalar(double value) { return Scalars({{1, value}}); }

struct NodeVector
{
  int    id;
  double x, y, z;
};

Fill Vectors(const FED_DataDescriptor& key, const std::vector<NodeVector>& values)
{
  return [=](FED_Database& db) {
    FED_IdDataBlock view(db.GetOrCreateDataBlock(key, 0), db.GetIdMapsPool(), true);
    for (const NodeVector& node : values) {
      const double vector[3] = {node.x, node.y, node.z};
      view.SetVector(node.id, vector);
    }
  };
}

Fill Tensor(const FED_DataDescriptor& key, int id, const std::vector<double>& values)
{
  return [=](FED_Database& db) {
    FED_IdDataBlock(db.GetOrCreateDataBlock(key, 0), db.GetIdMapsPool(), true).SetTensor(id, values.data());
  };
}

Fill Coordinates(const std::vector<NodeVector>& nodes) { return Vectors(FED_DataDescriptor(0, FED_OnfId(516)), nodes); }

// Record 1 of a block of the given format, its one field set.
Fill Field(int onf, const std::string& format, const std::function<void(FED_DataRecord&)>& set)
{
  return [=](FED_Database& db) {
    FED_DataBlock&        block  = *db.CreateDataBlock(Key(onf), 1, 20, format);
    FED_DataRecord* const record = block.CreateDataRecord();
    set(*record);
    block.SetRecord(1, *record);
    block.DeleteDataRecord(record);
  };
}

Fill Float(float value)
{
  return Field(4711, "F", [=](FED_DataRecord& record) { record.SetFloat(1, value); });
}
Fill Double(double value)
{
  return Field(4711, "D", [=](FED_DataRecord& record) { record.SetDouble(1, value); });
}
Fill Integer(const std::string& format, int value)
{
  return Field(4711, format, [=](FED_DataRecord& record) { record.SetInteger(1, value); });
}
Fill Text(const std::string& value)
{
  return Field(4711, "S", [=](FED_DataRecord& record) { record.SetString(1, value); });
}
Fill List(const std::vector<double>& values)
{
  return Field(4711, "Db", [=](FED_DataRecord& record) { record.SetDoubleList(1, FED_DoubleArray(values)); });
}

Fill History(int quantity, const std::vector<double>& values)
{
  return [=](FED_Database& db) {
    FED_DataDescriptor key(0, FED_OnfId_ScalarHistory);
    key.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(10), quantity);
    FED_DataBlock& block = db.GetOrCreateDataBlock(key, 0);
    for (std::size_t i = 0; i < values.size(); ++i) block.SetScalarAt(i + 1, values[i]);
  };
}

Fill Element(int id, const std::vector<int>& nodes, double energy)
{
  return [=](FED_Database& db) {
    FED_IdDataBlock view(db.GetOrCreateDataBlock(FED_DataDescriptor(0, FED_OnfId_ElementNodes), 0), db.GetIdMapsPool(),
                         true);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    record.SetIntList(1, nodes);
    view.SetRecord(id, record);
    ScalarsAt(Key(540), {{id, energy}})(db);
  };
}

Fill NodeSet(const std::vector<int>& nodes)
{
  const Fill set = Field(600, "Slb", [=](FED_DataRecord& record) {
    record.SetString(1, "EDGE");
    record.SetIntList(2, FED_IntArray(nodes));
  });
  return [=](FED_Database& db) {
    db.GetIdMapsPool().FindOrAddIndex(kNodeSetKind, 1);
    set(db);
  };
}

Fill UserKind(int onf, const std::string& name, double value)
{
  return [=](FED_Database& db) {
    db.SetUserKindName(static_cast<FED_OnfId>(onf), name);
    ScalarsAt(Key(onf), {{1, value}})(db);
  };
}

Fill EmptyBlock(int onf)
{
  return [=](FED_Database& db) { db.GetOrCreateDataBlock(Key(onf), 0); };
}

Fill Nothing()
{
  return [](FED_Database&) {};
}

Fill All(const std::vector<Fill>& fills)
{
  return [=](FED_Database& db) {
    for (const Fill& fill : fills) fill(db);
  };
}

// Four nodes, and the same places under other ids in the same and in another order.
Fill Mesh() { return Coordinates({{1, 1, 2, 3}, {2, 2, 3, 4}, {3, 3, 4, 5}, {4, 4, 5, 6}}); }
Fill RenumberedMesh() { return Coordinates({{11, 1, 2, 3}, {12, 2, 3, 4}, {13, 3, 4, 5}, {14, 4, 5, 6}}); }
Fill ReorderedMesh() { return Coordinates({{14, 4, 5, 6}, {12, 2, 3, 4}, {11, 1, 2, 3}, {13, 3, 4, 5}}); }
Fill MovedMesh(double by) { return Coordinates({{1, 1, 2, 3}, {2, 2 + by, 3, 4}, {3, 3, 4, 5}, {4, 4, 5, 6}}); }

const double kStep = 0x1p-52;  // from 1 to the next double

std::vector<Row> ValueRows()
{
  //                                                          library abs rel  ulps all nan= forbid index
  //                                                            exact       peak   any    nan/=   mode points
  return {
      {"equal values", Scalar(1), Scalar(1), "SS SSSS SS SS S S SS"},
      {"zero and minus zero", Scalar(0.0), Scalar(-0.0), "SS SSSS SS SS S S SS"},
      {"a field of zeros", Scalars({{1, 0}, {2, 0}}), Scalars({{1, 0}, {2, 0}}), "SS SSSS SS SS S S SS"},
      {"a field of zeros and noise", Scalar(0), Scalar(1e-7), "SD SDDD SD SS S S SS"},
      {"a field of zeros and ones", Scalar(0), Scalar(1), "DD DDDD DD DD D D DD"},
      {"exactly at abs, and at peak", Scalar(1), Scalar(1.25), "DD SSSD SS DD S S SS"},
      {"just beyond abs", Scalar(1), Scalar(1.25 + kStep), "DD DSDD SD DD D D DD"},
      {"exactly at rel", Scalar(4), Scalar(3), "DD DSDD SD DD D D DD"},
      {"just beyond rel", Scalar(4), Scalar(3 - 2 * kStep), "DD DDDD DD DD D D DD"},
      {"exactly at peak", Scalars({{1, 0}, {2, 8}}), Scalars({{1, 2}, {2, 8}}), "DD DDSD DD DD D D DD"},
      {"just beyond peak", Scalars({{1, 0}, {2, 8}}), Scalars({{1, 2 + 2 * kStep}, {2, 8}}), "DD DDDD DD DD D D DD"},
      {"the smaller peak counts", Scalars({{1, 0}, {2, 4}}), Scalars({{1, 1.25}, {2, 5}}), "DD DDDD DD DD D D DD"},
      {"exactly at ulps", Scalar(1), Scalar(1 + kStep), "SD SSSS SS SS S S SS"},
      {"just beyond ulps", Scalar(1), Scalar(1 + 2 * kStep), "SD SSSD SS SS S S SS"},
      {"the least numbers of both signs", Scalar(-kDenormal), Scalar(kDenormal), "SD SDDD SD SS S S SS"},
      {"negative within what the library allows", Scalar(-1), Scalar(-1.0000009), "SD SSSD SS SS S S SS"},
      {"negative beyond what the library allows", Scalar(-1), Scalar(-1.000002), "DD SSSD SS DD S S SS"},
      {"positive within what the library allows", Scalar(1), Scalar(1.0000005), "SD SSSD SS SS S S SS"},
      {"positive beyond what the library allows", Scalar(1), Scalar(1.000002), "DD SSSD SS DD S S SS"},
      {"small, positive and relatively far", Scalar(1e-8), Scalar(1e-7), "DD SDDD SD DD S S SS"},
      {"small, negative and relatively far", Scalar(-1e-8), Scalar(-1e-7), "SD SDDD SD SS S S SS"},
      {"large and relatively near", Scalar(1e9), Scalar(1e9 + 1e-4), "DD SSSD SS DD S S SS"},
      {"opposite signs", Scalar(1), Scalar(-1), "DD DDDD DD DD D D DD"},
      {"infinity", Scalar(kInf), Scalar(kInf), "SS SSSS SS SS S S SS"},
      {"infinities of both signs", Scalar(kInf), Scalar(-kInf), "DD DDDD DD DD D D DD"},
      {"infinity and a number", Scalar(kInf), Scalar(1), "DD DDDD DD DD D D DD"},
      {"NaN on both sides", Scalar(kNaN), Scalar(kNaN), "SS SSSS SS SD D S SS"},
      {"NaN on the left side", Scalar(kNaN), Scalar(1), "SD DDDD DD DD D D DD"},
      {"NaN on the right side", Scalar(1), Scalar(kNaN), "SD DDDD DD DD D D DD"},
      {"NaN and infinity", Scalar(kNaN), Scalar(kInf), "SD DDDD DD DD D D DD"},
      {"NaNs in different places", Scalars({{1, kNaN}, {2, 1}}), Scalars({{1, 1}, {2, kNaN}}), "SD DDDD DD DD D D DD"},
      {"NaN on both sides and a difference elsewhere", Scalars({{1, kNaN}, {2, 1}}), Scalars({{1, kNaN}, {2, 2}}),
       "DD DDDD DD DD D D DD"},
      {"NaN in one component of a vector", Vectors(Key(511), {{1, kNaN, 1, 1}}), Vectors(Key(511), {{1, 0, 1, 1}}),
       "SD DDDD DD DD D D DD"},
      {"NaN and a difference in one vector", Vectors(Key(511), {{1, kNaN, 1, 1}}), Vectors(Key(511), {{1, kNaN, 1, 2}}),
       "DD DDDD DD DD D D DD"},
      {"the last component of a tensor", Tensor(Key(521), 1, {1, 1, 1, 1, 1, 1}),
       Tensor(Key(521), 1, {1, 1, 1, 1, 1, 1.25}), "DD SSSD SS DD S S SS"},
  };
}

std::vector<Row> StructureRows()
{
  return {
      {"nothing", Nothing(), Nothing(), "SS SSSS SS SS S S SS"},
      {"a block that is missing", Scalar(1), Nothing(), "DD DDDD DD DD D D DD"},
      {"a block that is additional", Nothing(), Scalar(1), "DD DDDD DD DD D D DD"},
      {"a block without records and none", EmptyBlock(514), Nothing(), "SS SSSS SS SS S S SS"},
      {"a block without records and one with", EmptyBlock(514), Scalar(1), "DD DDDD DD DD D D DD"},
      {"a record that is missing", Scalars({{1, 1}, {2, 1}}), Scalars({{1, 1}}), "DD DDDD DD DD D D DD"},
      {"a record that is additional", Scalars({{1, 1}}), Scalars({{1, 1}, {2, 1}}), "DD DDDD DD DD D D DD"},
      {"another kind", ScalarsAt(Key(514), {{1, 1}}), ScalarsAt(Key(517), {{1, 1}}), "DD DDDD DD DD D D DD"},
      {"another substep", ScalarsAt(Key(514, 1, 1), {{1, 1}}), ScalarsAt(Key(514, 1, 2), {{1, 1}}),
       "DD DDDD DD DD D D DD"},
      {"another layer", ScalarsAt(InLayer(1), {{1, 1}}), ScalarsAt(InLayer(2), {{1, 1}}), "DD DDDD DD DD D D DD"},
      {"a key that differs in its mask alone", ScalarsAt(Key(514, 0), {{1, 1}}),
       ScalarsAt(WithoutAnalysis(514), {{1, 1}}), "DD DDDD DD DD D D DD"},
      {"histories", History(502, {1, 2}), History(502, {1, 2}), "SS SSSS SS SS S S SS"},
      {"histories of other quantities", History(502, {1, 2}), History(503, {1, 2}), "DD DDDD DD DD D D DD"},
      {"a history with one point more", History(502, {1, 2}), History(502, {1, 2, 3}), "DD DDDD DD DD D D DD"},
      {"empty lists", List({}), List({}), "DS SSSS SS DD S S SS"},
      {"lists of other lengths", List({1}), List({1, 1}), "DD DDDD DD DD D D DD"},
      {"an empty list and one of a value", List({}), List({0}), "DD DDDD DD DD D D DD"},
      {"lists that differ at their end", List({1, 1}), List({1, 1.25}), "DD SSSD SS DD S S SS"},
      {"equal integers", Integer("I", 7), Integer("I", 7), "SS SSSS SS SS S S SS"},
      {"integers one apart", Integer("I", 1000000000), Integer("I", 1000000001), "DD DDDD DD DD D D DD"},
      {"the two integer types", Integer("I", 7), Integer("i", 7), "DD SSSS SS DD S S SS"},
      {"an integer and a double", Integer("I", 7), Double(7), "DD DDDD DD DD D D DD"},
      {"equal texts", Text("abc"), Text("abc"), "SS SSSS SS SS S S SS"},
      {"other texts", Text("abc"), Text("abC"), "DD DDDD DD DD D D DD"},
      {"single and double precision of a number that both have", Float(0.5f), Double(0.5), "DD SSSS SS DD S S SS"},
      {"single and double precision of a tenth", Float(0.1f), Double(0.1), "DD SSSD SS DD S S SS"},
      {"neighbours in single precision", Float(1.0f), Float(1.0f + 0x1p-23f), "SD SSSS SS SS S S SS"},
      {"user kinds of one name and other ids", UserKind(1000, "Wear", 1), UserKind(1001, "Wear", 1),
       "SS SSSS SS SS S S SS"},
      {"user kinds of one id and other names", UserKind(1000, "Wear", 1), UserKind(1000, "Heat", 1),
       "DD DDDD DD DD D D DD"},
      {"user kinds of one name, of nodes and of elements", UserKind(1000, "Wear", 1), UserKind(1400, "Wear", 1),
       "DD DDDD DD DD D D DD"},
      {"two user kinds of one name", All({UserKind(1000, "Wear", 1), UserKind(1001, "Wear", 2)}),
       All({UserKind(1000, "Wear", 1), UserKind(1001, "Wear", 2)}), "SS SSSS SS SS S S SS"},
      {"two user kinds of one name and one of it", All({UserKind(1000, "Wear", 1), UserKind(1001, "Wear", 2)}),
       UserKind(1000, "Wear", 1), "DD DDDD DD DD D D DD"},
      // Record 1 is that of id 1 where ids are not used, and that of id 7 where id 7 was the first.
      {"a kind that nobody knows, by index and by id", Double(1), ScalarsAt(Key(4711), {{7, 1}}),
       "DD DDDD DD DD D D SD"},
  };
}

std::vector<Row> ModeRows()
{
  const Fill mode        = Vectors(Key(510, 2), {{1, 1, 2, 3}, {2, 0, -1, 2}});
  const Fill flipped     = Vectors(Key(510, 2), {{1, -1, -2, -3}, {2, 0, 1, -2}});
  const Fill otherMode   = Vectors(Key(510, 2, 2), {{1, 1, 0, 0}});
  const Fill stress      = Tensor(Key(521, 2), 1, {5, 4, 3, 2, 1, 6});
  const Fill otherStress = Tensor(Key(521, 2), 1, {-5, -4, -3, -2, -1, -6});
  const auto hot         = [](double value) { return ScalarsAt(Key(514, 2), {{1, value}}); };
  const auto inLayer     = [](int layer, double x) {
    FED_DataDescriptor key = Key(510, 2);
    key.SetInteger(FED_DataDescriptor::Layer, layer);
    return Vectors(key, {{1, x, 0, 0}});
  };
  const auto mechanical = [](double sign) -> Fill {
    return [=](FED_Database& db) {
      db.SetUserKindName(static_cast<FED_OnfId>(1200), "MESTRAIN");
      Tensor(Key(1200, 2), 1, {sign, sign, sign, sign, sign, sign})(db);
    };
  };
  const auto imaginary = [](double sign) -> Fill {
    return [=](FED_Database& db) {
      db.SetUserKindName(static_cast<FED_OnfId>(1100), "DISPI");
      Vectors(Key(1100, 2), {{1, sign * 4, sign * 5, sign * 6}})(db);
    };
  };
  return {
      {"a mode with the other sign", mode, flipped, "DD DDDD DD DD D S DD"},
      {"a small mode with the other sign", Vectors(Key(510, 2), {{1, 0.5, 0, 0}}),
       Vectors(Key(510, 2), {{1, -0.5, 0, 0}}), "DD DDDD DD DD D S DD"},
      {"a mode with the other sign in one node", Vectors(Key(510, 2), {{1, 1, 0, 0}, {2, 1, 0, 0}}),
       Vectors(Key(510, 2), {{1, 1, 0, 0}, {2, -1, 0, 0}}), "DD DDDD DD DD D D DD"},
      {"a mode with the other sign in most of it", Vectors(Key(510, 2), {{1, 3, 0, 0}, {2, 1, 0, 0}}),
       Vectors(Key(510, 2), {{1, -3, 0, 0}, {2, 1, 0, 0}}), "DD DDDD DD DD D D DD"},
      {"a mode with the other sign, near", mode, Vectors(Key(510, 2), {{1, -1, -2, -2.75}, {2, 0, 1, -2}}),
       "DD DDDD DD DD D S DD"},
      {"a static displacement with the other sign", Vectors(Key(510, 1), {{1, 1, 2, 3}}),
       Vectors(Key(510, 1), {{1, -1, -2, -3}}), "DD DDDD DD DD D D DD"},
      {"the other sign where no analysis is set", Vectors(WithoutAnalysis(510), {{1, 1, 2, 3}}),
       Vectors(WithoutAnalysis(510), {{1, -1, -2, -3}}), "DD DDDD DD DD D S DD"},
      {"a stress that goes with its mode", All({mode, stress}), All({flipped, otherStress}), "DD DDDD DD DD D S DD"},
      {"a stress that does not go with its mode", All({mode, stress}), All({mode, otherStress}),
       "DD DDDD DD DD D D DD"},
      {"a stress whose mode has its displacement on one side", All({mode, stress}), stress, "DD DDDD DD DD D D DD"},
      {"a stress of a mode without displacement", stress, otherStress, "DD DDDD DD DD D S DD"},
      {"principal values of a mode with the other sign", All({mode, Vectors(Key(520, 2), {{1, 3, 1, -2}})}),
       All({flipped, Vectors(Key(520, 2), {{1, 2, -1, -3}})}), "DD DDDD DD DD D S DD"},
      {"principal values of a mode without displacement", Vectors(Key(520, 2), {{1, 3, 1, -2}}),
       Vectors(Key(520, 2), {{1, 2, -1, -3}}), "DD DDDD DD DD D S DD"},
      {"principal values of a mode without displacement that have one sign", Vectors(Key(520, 2), {{1, 3, 1, -2}}),
       Vectors(Key(520, 2), {{1, 3, 1, -2}}), "SS SSSS SS SS S S SS"},
      // What is small decides nothing, and passes by its size.
      {"a mode in layers, the larger one with the other sign", All({inLayer(1, 0.1), inLayer(2, 8)}),
       All({inLayer(1, 0.1), inLayer(2, -8)}), "DD DDDD DD DD D S DD"},
      {"a mode in layers, the smaller one with the other sign", All({inLayer(1, 1), inLayer(2, 8)}),
       All({inLayer(1, -1), inLayer(2, 8)}), "DD DDDD DD DD D D DD"},
      {"a complex mode with the other sign", All({mode, imaginary(1)}), All({flipped, imaginary(-1)}),
       "DD DDDD DD DD D S DD"},
      {"a complex mode whose real part is small", All({inLayer(1, 0.1), imaginary(1)}),
       All({inLayer(1, 0.1), imaginary(-1)}), "DD DDDD DD DD D S DD"},
      {"a complex mode whose parts have other signs", All({mode, imaginary(1)}), All({mode, imaginary(-1)}),
       "DD DDDD DD DD D D DD"},
      {"a mechanical strain that goes with its mode", All({mode, mechanical(1)}), All({flipped, mechanical(-1)}),
       "DD DDDD DD DD D S DD"},
      {"a temperature keeps its sign", All({mode, hot(1)}), All({flipped, hot(1)}), "DD DDDD DD DD D S DD"},
      {"a temperature has no other sign", All({mode, hot(1)}), All({flipped, hot(-1)}), "DD DDDD DD DD D D DD"},
      {"one of two modes with the other sign", All({mode, otherMode}), All({flipped, otherMode}),
       "DD DDDD DD DD D S DD"},
  };
}

std::vector<Row> MeshRows()
{
  const auto field  = [](int a, int b, int c, int d) { return Scalars({{a, 10}, {b, 20}, {c, 30}, {d, 40}}); };
  const Fill mesh   = All({Mesh(), field(1, 2, 3, 4)});
  const Fill wrong  = All({RenumberedMesh(), Scalars({{11, 10}, {12, 20}, {13, 30}, {14, 41}})});
  const Fill solid  = Element(7, {1, 2, 3}, 5);
  const Fill solid2 = Element(8, {2, 3, 4}, 6);
  return {
      {"one mesh", mesh, mesh, "SS SSSS SS SS S S SS"},
      {"ids in another order of first use", All({Mesh(), field(1, 2, 3, 4)}),
       All({Coordinates({{4, 4, 5, 6}, {3, 3, 4, 5}, {2, 2, 3, 4}, {1, 1, 2, 3}}), field(1, 2, 3, 4)}),
       "SS SSSS SS SS S S DS"},
      {"a renumbered mesh", mesh, All({RenumberedMesh(), field(11, 12, 13, 14)}), "DD DDDD DD DD D D SS"},
      {"a reordered mesh", mesh, All({ReorderedMesh(), field(11, 12, 13, 14)}), "DD DDDD DD DD D D DS"},
      {"a renumbered mesh with another value", mesh, wrong, "DD DDDD DD DD D D DD"},
      {"a mesh moved within the tolerance", Mesh(), MovedMesh(1e-9), "SD SSSD SS SS S S SS"},
      {"a mesh moved beyond the tolerance", Mesh(), MovedMesh(0.5), "DD DSSD SD DD D D DD"},
      {"a mesh moved beyond the tolerance of places alone", Mesh(), MovedMesh(0.125), "DD SSSD SS DD S S SD"},
      {"renumbered nodes and elements", All({Mesh(), solid, solid2}),
       All({RenumberedMesh(), Element(107, {11, 12, 13}, 5), Element(108, {12, 13, 14}, 6)}), "DD DDDD DD DD D D DS"},
      {"renumbered elements in another order", All({Mesh(), solid, solid2}),
       All({RenumberedMesh(), Element(107, {12, 13, 14}, 6), Element(108, {11, 12, 13}, 5)}), "DD DDDD DD DD D D DS"},
      {"renumbered elements with another value", All({Mesh(), solid, solid2}),
       All({RenumberedMesh(), Element(107, {12, 13, 14}, 5), Element(108, {11, 12, 13}, 6)}), "DD DDDD DD DD D D DD"},
      {"an element between other nodes", All({Mesh(), solid}), All({RenumberedMesh(), Element(107, {11, 12, 14}, 5)}),
       "DD DDDD DD DD D D DD"},
      {"a renumbered set of nodes", All({Mesh(), NodeSet({1, 2, 3})}), All({RenumberedMesh(), NodeSet({13, 12, 11})}),
       "DD DDDD DD DD D D DS"},
      {"a renumbered set of other nodes", All({Mesh(), NodeSet({1, 2, 3})}),
       All({RenumberedMesh(), NodeSet({11, 12, 14})}), "DD DDDD DD DD D D DD"},
      {"coordinates on one side", Mesh(), Scalar(1), "DD DDDD DD DD D D DT"},
  };
}

void ExpectVerdicts(const std::vector<Row>& rows, const Fill& common)
{
  for (const Row& row : rows) {
    FED_ResultDatabase a;
    FED_ResultDatabase b;
    common(a);
    common(b);
    row.a(a);
    row.b(b);
    EXPECT_EQ(Verdicts(a, b), WithoutBlanks(row.verdicts)) << row.name;
    EXPECT_EQ(Verdicts(b, a), WithoutBlanks(row.verdicts)) << row.name << ", swapped";
  }
}

TEST(TruthTable, Values) { ExpectVerdicts(ValueRows(), Mesh()); }

TEST(TruthTable, Structure) { ExpectVerdicts(StructureRows(), Mesh()); }

TEST(TruthTable, Modes) { ExpectVerdicts(ModeRows(), Mesh()); }

TEST(TruthTable, Meshes) { ExpectVerdicts(MeshRows(), Nothing()); }

TEST(TruthTable, HasAtLeastSixtyPairs)
{
  EXPECT_GE(ValueRows().size() + StructureRows().size() + ModeRows().size() + MeshRows().size(), 60u);
}

}  // namespace
