// Writing and reading the file of a 500-trait character, compared with RapidJSON writing and parsing the same
// strings.
#include <benchmark/benchmark.h>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <stdexcept>

#include "character/KVRCharacter.h"
#include "character/SavedText.h"
#include "core/ScriptedPrompts.h"
#include "core/clsFileReader.h"

namespace {

using namespace kvr;

struct World {
  ScriptedPrompts prompts;
  FrontEndEvents events;
  Environment env{prompts, events};
  KVRSystem system{env};
};

// The file of a character with 500 traits of all types, each with some 20 tags, every third with a modifier,
// every fifth with a bonus.
std::string MakeFile() {
  std::string traits[10], mods, bonuses;
  for (int i = 1; i <= 500; ++i) {
    const std::string n = std::to_string(i);
    traits[1 + i % 9] +=
        "idkey(" + n + ")|,cat(Craft, Trade),page(B" + n + "),default(DX-" + std::to_string(i % 6) +
        ", {SK:Trait Number " + n + " (Fine)}-3),gives(+1 to {SK:Trait Number " + n +
        "}),needs({AD:Patience}, ST:DX > 11),tl(3),cost(5/10/15),upto(4),usernotes(Taught by the miller's "
        "daughter in the winter of the long snow),type(DX/A),nameext(Fine),name(Trait Number " +
        n +
        "),basepoints(2.0),points(4.0),baselevel(1),level(12),score(12.0),premodspoints(4.0),"
        "needscheck(0),taboofailed(0),description(What it is good for, in a sentence or two.)\r\n";
    const std::string key = std::to_string(1000 + i);
    if (i % 3 == 0) {
      mods += "idkey(" + key + "),parentkey(" + n + ")|,name(Unreliable " + n +
              "),group(Craft),cost(-10%),value(-10%),level(1),page(B110),premodsvalue(-10%)\r\n";
    }
    if (i % 5 == 0) {
      bonuses +=
          "ownerid(" + n + "),targetprefix(SK),targetname(trait number " + n +
          "),targetext(fine),targettag(level),targettype(6),bonus(1),affects(level),upto(),value(1),"
          "stringvaluetext(),stringvalue(),bonustype(1),notes(),listas(),fullbonustext(+1 to SK:Trait)\r\n";
    }
  }
  const char* heads[10] = {"",        "[Stats]",  "[Advantages]", "[Disadvantages]", "[Quirks]",
                           "[Perks]", "[Skills]", "[Spells]",     "[Equipment]",     "[Packages]"};
  std::string file = "Encoding=UTF-8\r\n[System]\r\nversion(3)\r\n\r\n";
  for (int type = 1; type <= 9; ++type) file += std::string(heads[type]) + "\r\n" + traits[type] + "\r\n";
  return file + "[Mods]\r\n" + mods + "\r\n[Bonuses]\r\n" + bonuses + "\r\n[ChangeLog]\r\n\r\n";
}

std::unique_ptr<KVRCharacter> Read(World& world, const std::string& text) {
  auto character = std::make_unique<KVRCharacter>(world.env, world.system);
  clsFileReader reader;
  reader.TextOpen(text, 0, TextEncoding::AlwaysUtf8);
  if (!character->ReadSections(reader)) throw std::runtime_error("the file can't be read");
  return character;
}

// The file as the program itself writes it; its reading must give it back.
const std::string& TheFile() {
  static const std::string file = [] {
    World world;
    std::string text = Read(world, MakeFile())->FileText();
    auto again = Read(world, text);
    if (again->Items.Count() != 500 || again->Bonuses.size() != 100 || again->FileText() != text) {
      throw std::runtime_error("the character does not come back from its file");
    }
    return text;
  }();
  return file;
}

// Every line as an object of its tags and values.
rapidjson::Document AsJson(const std::string& file) {
  rapidjson::Document json(rapidjson::kArrayType);
  auto& memory = json.GetAllocator();
  auto text = [&](std::string_view s) {
    return rapidjson::Value(s.data(), static_cast<rapidjson::SizeType>(s.size()), memory);
  };
  clsFileReader reader;
  reader.TextOpen(file, 0, TextEncoding::AlwaysUtf8);
  while (!reader.FileEOF()) {
    std::string line(reader.FileNextLine());
    for (char& c : line) {
      if (c == '|') c = ',';
    }
    rapidjson::Value record(rapidjson::kObjectType);
    savedText::ForEachTag(line, [&](std::string_view tag, std::string_view value) {
      record.AddMember(text(tag), text(value), memory);
    });
    json.PushBack(record.MemberCount() ? std::move(record) : text(line), memory);
  }
  return json;
}

rapidjson::StringBuffer Written(const rapidjson::Document& json) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  json.Accept(writer);
  return buffer;
}

void CharacterFileWriteOurs(benchmark::State& state) {
  World world;
  auto character = Read(world, TheFile());
  for (auto _ : state) benchmark::DoNotOptimize(character->FileText());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(TheFile().size()));
}

void CharacterFileWriteReference(benchmark::State& state) {
  const rapidjson::Document json = AsJson(TheFile());
  for (auto _ : state) {
    const rapidjson::StringBuffer buffer = Written(json);
    benchmark::DoNotOptimize(buffer.GetString());
  }
}

void CharacterFileReadOurs(benchmark::State& state) {
  World world;
  const std::string& file = TheFile();
  for (auto _ : state) benchmark::DoNotOptimize(Read(world, file));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.size()));
}

void CharacterFileReadReference(benchmark::State& state) {
  const rapidjson::Document json = AsJson(TheFile());
  const std::string text = Written(json).GetString();
  for (auto _ : state) {
    rapidjson::Document parsed;
    parsed.Parse(text.data(), text.size());
    if (parsed.Size() != json.Size()) throw std::runtime_error("the reference is not read");
    benchmark::DoNotOptimize(parsed);
  }
}

BENCHMARK(CharacterFileWriteOurs)->Name("CharacterFileWrite/ours")->Unit(benchmark::kMicrosecond);
BENCHMARK(CharacterFileWriteReference)->Name("CharacterFileWrite/reference")->Unit(benchmark::kMicrosecond);
BENCHMARK(CharacterFileReadOurs)->Name("CharacterFileRead/ours")->Unit(benchmark::kMicrosecond);
BENCHMARK(CharacterFileReadReference)->Name("CharacterFileRead/reference")->Unit(benchmark::kMicrosecond);

}  // namespace
