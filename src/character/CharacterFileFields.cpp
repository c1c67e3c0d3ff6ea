// The tables of the character file's tags.
#include "character/CharacterFileFields.h"

#include "character/KVRCharacter.h"
#include "core/Numbers.h"

namespace kvr::savedFields {

using savedText::SavedLines;
using savedText::ToInteger;
using savedText::ToLong;

namespace {

void Assign(std::string& field, std::string_view value) {
  field = value;
}
void Assign(std::int32_t& field, std::string_view value) {
  field = ToLong(value);
}
void Assign(std::int16_t& field, std::string_view value) {
  field = ToInteger(value);
}
void Assign(double& field, std::string_view value) {
  field = Val(value);
}
void Assign(bool& field, std::string_view value) {
  field = IsSet(value);
}
void Assign(Currency& field, std::string_view value) {
  field = Currency::FromVal(value);
}

void WriteTag(std::string_view tag, const std::string& value, SavedLines& lines) {
  lines.Tag(tag, value);
}
void WriteTag(std::string_view tag, std::int32_t value, SavedLines& lines) {
  lines.Tag(tag, value);
}
void WriteTag(std::string_view tag, std::int16_t value, SavedLines& lines) {
  lines.Tag(tag, std::int32_t{value});
}
void WriteTag(std::string_view tag, double value, SavedLines& lines) {
  lines.Tag(tag, NumberText(value));
}
void WriteTag(std::string_view tag, bool value, SavedLines& lines) {
  lines.TagFlag(tag, value);
}
void WriteTag(std::string_view tag, Currency value, SavedLines& lines) {
  lines.Tag(tag, value);
}

// A plain member.
template <auto Member, class Record>
constexpr Field<Record> Plain(std::string_view tag) {
  return {tag, [](std::string_view t, Record& r, SavedLines& lines) { WriteTag(t, r.*Member, lines); },
          [](Record& r, std::string_view value) { Assign(r.*Member, Trim(value)); }};
}

// A text whose outer blanks count.
template <auto Member, class Record>
constexpr Field<Record> Exact(std::string_view tag) {
  return {tag, [](std::string_view t, Record& r, SavedLines& lines) { lines.TagExact(t, r.*Member); },
          [](Record& r, std::string_view value) { r.*Member = value; }};
}

// A path that is stored with the alias words of its kind.
template <auto Member, int Kind>
constexpr Field<KVRCharacter> Path(std::string_view tag) {
  return {tag,
          [](std::string_view t, KVRCharacter& c, SavedLines& lines) {
            lines.Tag(t, c.Env().Folders.AliasPath(Kind, c.*Member));
          },
          [](KVRCharacter& c, std::string_view value) {
            c.*Member = c.Env().Folders.ExpandPath(Kind, kNoFolder, Trim(value));
          }};
}

// Protection of the time before [Body]: the character's own field, and the body part where there is a value.
template <auto Array, std::size_t Index, auto PartField>
constexpr Field<KVRCharacter> Protection(std::string_view tag) {
  return {tag,
          [](std::string_view t, KVRCharacter& c, SavedLines& lines) { lines.Tag(t, (c.*Array)[Index]); },
          [](KVRCharacter& c, std::string_view value) {
            constexpr std::string_view kParts[] = {"Head", "Body", "Arms", "Legs", "Hands", "Feet"};
            (c.*Array)[Index] = Trim(value);
            clsBodyItem* part = (c.*Array)[Index].empty() ? nullptr : c.Body.Part(kParts[Index]);
            if (part) part->*PartField = Trim(value);
          }};
}
template <std::size_t Index>
constexpr Field<KVRCharacter> Pd(std::string_view tag) {
  return Protection<&KVRCharacter::PD, Index, &clsBodyItem::DB>(tag);
}
template <std::size_t Index>
constexpr Field<KVRCharacter> Dr(std::string_view tag) {
  return Protection<&KVRCharacter::DR, Index, &clsBodyItem::DR>(tag);
}

void WriteAltSheets(std::string_view tag, KVRCharacter& c, SavedLines& lines) {
  for (std::size_t i = 0; i < c.AltFlexFiles.size(); ++i) {
    if (i > 0) lines.EndLine();
    lines.Tag(tag, c.Env().Folders.AliasPath(kSheets, c.AltFlexFiles[i]));
  }
}
void ReadAltSheet(KVRCharacter& c, std::string_view value) {
  c.AltFlexFiles.push_back(c.Env().Folders.ExpandPath(kSheets, kNoFolder, Trim(value)));
}

void WriteQuickView(std::string_view tag, KVRCharacter& c, SavedLines& lines) {
  std::string path = c.QuickViewPath;
  if (!path.empty() && !path.ends_with('\\')) path += '\\';
  lines.Tag(tag, c.Env().Folders.AliasPath(kSheets, path + c.QuickView));
}
void ReadQuickView(KVRCharacter& c, std::string_view value) {
  const std::string path = c.Env().Folders.ExpandPath(kSheets, kNoFolder, Trim(value));
  const Files::PathParts parts = Files::SplitPath(path);
  c.QuickViewPath = parts.folder;
  c.QuickView = parts.name;
}

void WriteInPlay(std::string_view tag, KVRCharacter& c, SavedLines& lines) {
  lines.TagFlag(tag, c.InPlay());
}
void ReadInPlay(KVRCharacter& c, std::string_view value) {
  c.SetInPlayFieldOnly(IsSet(Trim(value)));
}

void WriteNotEmpty(std::string_view tag, const std::string& value, SavedLines& lines) {
  if (!value.empty()) lines.Tag(tag, value);
}
template <auto Member, class Record>
constexpr Field<Record> NotEmpty(std::string_view tag) {
  return {tag, [](std::string_view t, Record& r, SavedLines& lines) { WriteNotEmpty(t, r.*Member, lines); },
          [](Record& r, std::string_view value) { r.*Member = Trim(value); }};
}

template <class Record>
constexpr Field<Record> TypeByName() {
  return {"itemtype",
          [](std::string_view t, Record& r, SavedLines& lines) {
            lines.Tag(t, LCase(modPrefixes::CollectionName(r.ItemType)));
          },
          [](Record& r, std::string_view value) {
            r.ItemType = modPrefixes::TypeFromCollectionName(Trim(value));
          }};
}

using C = KVRCharacter;
constexpr Field<C> kGeneral[] = {
    Plain<&C::Name, C>("charname"),
    Plain<&C::Player, C>("playername"),
    Plain<&C::DateCreated, C>("datecreated"),
    Path<&C::Portrait, kDocuments>("portraitfile"),
    Path<&C::FlexFile, kSheets>("charactersheet"),
    {"altcharactersheet", WriteAltSheets, ReadAltSheet},
    {"quickviewsheet", WriteQuickView, ReadQuickView},
    {"charinplay", WriteInPlay, ReadInPlay},
    {"tl", nullptr, [](C& c, std::string_view value) { c.TL = ToInteger(value); }},
    Plain<&C::Race, C>("race"),
    Plain<&C::BodyType, C>("bodytype"),
    Plain<&C::Height, C>("height"),
    Plain<&C::Weight, C>("weight"),
    Plain<&C::Age, C>("age"),
    Plain<&C::Appearance, C>("appearance"),
    Pd<0>("pdhead"),
    Pd<1>("pdbody"),
    Pd<2>("pdarms"),
    Pd<3>("pdlegs"),
    Pd<4>("pdhands"),
    Pd<5>("pdfeet"),
    Plain<&C::OtherPD, C>("otherpd"),
    Dr<0>("drhead"),
    Dr<1>("drbody"),
    Dr<2>("drarms"),
    Dr<3>("drlegs"),
    Dr<4>("drhands"),
    Dr<5>("drfeet"),
    Plain<&C::OtherDR, C>("otherdr"),
    Plain<&C::CurrentLoadout, C>("currentloadout"),
    Plain<&C::CurrentLoad, C>("currentload"),
    Plain<&C::EncumbranceLevel, C>("encumbrancelevel"),
    Plain<&C::ParryIDKey, C>("parryidkey"),
    Plain<&C::ParryUsing, C>("parryusing"),
    Plain<&C::ParryScore, C>("parryscore"),
    Plain<&C::BlockIDKey, C>("blockidkey"),
    Plain<&C::BlockUsing, C>("blockusing"),
    Plain<&C::BlockScore, C>("blockscore"),
};

constexpr Field<C> kSettings[] = {
    Plain<&C::AllowHalfPointSpells, C>("allowhalfpointspells"),
    Plain<&C::ModMultPercents, C>("modmultpercents"),
    Plain<&C::RuleOf, C>("ruleof"),
    Plain<&C::GlobalRuleOf, C>("globalruleof"),
    Plain<&C::UseDiceAddsConversion, C>("usediceaddsconversion"),
    Plain<&C::AllowNonIQOptSpecs, C>("allownoniqoptspecs"),
};

using B = clsBodyItem;
constexpr Field<B> kBodyPart[] = {
    Plain<&B::Name, B>("name"),     Plain<&B::BaseDB, B>("basedb"), Plain<&B::BaseDR, B>("basedr"),
    Plain<&B::BaseHP, B>("basehp"), Plain<&B::DB, B>("db"),         Plain<&B::DR, B>("dr"),
    Plain<&B::HP, B>("hp"),         Plain<&B::Group, B>("group"),   Plain<&B::Display, B>("display"),
    Plain<&B::PosX, B>("posx"),     Plain<&B::PosY, B>("posy"),     Plain<&B::Expanded, B>("expanded"),
};

using I = clsCampaignInfo;
constexpr Field<I> kCampaign[] = {
    Plain<&I::Name, I>("name"),
    Plain<&I::BasePoints, I>("basepoints"),
    Plain<&I::DisadLimit, I>("disadlimit"),
    Plain<&I::QuirkLimit, I>("quirklimit"),
    Plain<&I::BaseTL, I>("basetl"),
    Plain<&I::LoggedPoints, I>("loggedpoints"),
    Plain<&I::OtherPoints, I>("otherpoints"),
    Plain<&I::TotalPoints, I>("totalpoints"),
};

using L = clsLogEntry;
constexpr Field<L> kLogEntry[] = {
    Plain<&L::EntryDate, L>("date"),
    Plain<&L::CampaignDate, L>("campaigndate"),
    Plain<&L::CharPoints, L>("charpoints"),
    Plain<&L::Caption, L>("caption"),
};

using N = clsBonus;
constexpr Field<N> kBonus[] = {
    Exact<&N::TargetPrefix, N>("targetprefix"),
    Exact<&N::TargetName, N>("targetname"),
    Exact<&N::TargetExt, N>("targetext"),
    Exact<&N::TargetTag, N>("targettag"),
    Plain<&N::TargetType, N>("targettype"),
    Exact<&N::Bonus, N>("bonus"),
    Exact<&N::Affects, N>("affects"),
    Exact<&N::Upto, N>("upto"),
    Plain<&N::Value, N>("value"),
    Exact<&N::StringValueText, N>("stringvaluetext"),
    Exact<&N::StringValue, N>("stringvalue"),
    Plain<&N::BonusType, N>("bonustype"),
    Exact<&N::Notes, N>("notes"),
    Exact<&N::ListAs, N>("listas"),
    Exact<&N::FullBonusText, N>("fullbonustext"),
};

using D = clsBasicDamage;
constexpr Field<D> kBasicDamage[] = {
    Plain<&D::ST, D>("st"),         Plain<&D::THBase, D>("thbase"), Plain<&D::THAdd, D>("thadd"),
    Plain<&D::SWBase, D>("swbase"), Plain<&D::SWAdd, D>("swadd"),
};

using K = clsDamageBreak;
constexpr Field<K> kDamageBreak[] = {
    Plain<&K::Break, K>("break"),
    Plain<&K::AddDice, K>("adddice"),
    Plain<&K::Subtract, K>("subtract"),
};

using S = clsSkillCosts;
constexpr Field<S> kSkillType[] = {
    Plain<&S::Name, S>("name"),
    Plain<&S::Costs, S>("costs"),
    Plain<&S::BaseAdj, S>("baseadj"),
    Plain<&S::Adds, S>("adds"),
    Plain<&S::DefaultStat, S>("defaultstat"),
    Plain<&S::ZeroPointsOkay, S>("zeropointsokay"),
    Plain<&S::SubZero, S>("subzero"),
    Plain<&S::RelName, S>("relname"),
};

using G = clsChangeItem;
constexpr Field<G> kChange[] = {
    Plain<&G::Op, G>("op"),   Plain<&G::Target, G>("target"),     Plain<&G::Source, G>("source"),
    Exact<&G::Tag, G>("tag"), Exact<&G::OldValue, G>("oldvalue"), Exact<&G::NewValue, G>("newvalue"),
};

using R = clsRefItem;
constexpr Field<R> kGroup[] = {
    Plain<&R::Group, R>("group"),
    Plain<&R::Name, R>("name"),
    NotEmpty<&R::NameExt, R>("nameext"),
    TypeByName<R>(),
};

using T = clsCategory;
constexpr Field<T> kCat[] = {
    Plain<&T::Name, T>("name"),
    NotEmpty<&T::Code, T>("code"),
    TypeByName<T>(),
};

}  // namespace

std::span<const Field<KVRCharacter>> General() {
  return kGeneral;
}
std::span<const Field<KVRCharacter>> Settings() {
  return kSettings;
}
std::span<const Field<clsBodyItem>> BodyPart() {
  return kBodyPart;
}
std::span<const Field<clsCampaignInfo>> Campaign() {
  return kCampaign;
}
std::span<const Field<clsLogEntry>> LogEntry() {
  return kLogEntry;
}
std::span<const Field<clsBonus>> Bonus() {
  return kBonus;
}
std::span<const Field<clsBasicDamage>> BasicDamage() {
  return kBasicDamage;
}
std::span<const Field<clsDamageBreak>> DamageBreak() {
  return kDamageBreak;
}
std::span<const Field<clsSkillCosts>> SkillType() {
  return kSkillType;
}
std::span<const Field<clsChangeItem>> Change() {
  return kChange;
}
std::span<const Field<clsRefItem>> Group() {
  return kGroup;
}
std::span<const Field<clsCategory>> Cat() {
  return kCat;
}

}  // namespace kvr::savedFields
