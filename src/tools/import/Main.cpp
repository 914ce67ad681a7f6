// tov-import: converts a cross in the CSV format of the common R package
// for QTL mapping into a project of this program.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>

#include "tools/import/CrossTable.h"
#include "tools/import/ProjectFiles.h"

namespace {

constexpr const char* Usage =
    "usage: tov-import CROSS.csv [options]\n"
    "  --out FOLDER            where the project is written (default: the current folder)\n"
    "  --name STEM             names the files STEM.txt, STEM.par, STEM.map (default: the CSV file's stem)\n"
    "  --donor A,AA            calls of the donor homozygote\n"
    "  --background B,BB       calls of the background homozygote\n"
    "  --heterozygote H,AB     calls of the heterozygote\n"
    "  --missing -,NA          calls of a missing genotype or phenotype (an empty field is missing too)\n"
    "  --heterozygote-missing  read heterozygous calls as missing genotypes\n";

std::vector<std::string> SplitCodes(std::string_view list) {
  std::vector<std::string> codes;
  std::stringstream stream{std::string(list)};
  for (std::string code; std::getline(stream, code, ',');) codes.push_back(code);
  return codes;
}

int Fail(const std::string& message) {
  std::fprintf(stderr, "tov-import: %s\n", message.c_str());
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  std::string csvName, folder = ".", stem;
  tov::GenotypeCodes codes;
  for (int i = 1; i < argc; ++i) {
    const std::string_view arg = argv[i];
    const bool hasValue = i + 1 < argc;
    if (arg == "--heterozygote-missing") {
      codes.HeterozygoteAsMissing = true;
    } else if (arg == "--out" && hasValue) {
      folder = argv[++i];
    } else if (arg == "--name" && hasValue) {
      stem = argv[++i];
    } else if (arg == "--donor" && hasValue) {
      codes.Donor = SplitCodes(argv[++i]);
    } else if (arg == "--background" && hasValue) {
      codes.Background = SplitCodes(argv[++i]);
    } else if (arg == "--heterozygote" && hasValue) {
      codes.Heterozygote = SplitCodes(argv[++i]);
    } else if (arg == "--missing" && hasValue) {
      codes.Missing = SplitCodes(argv[++i]);
    } else if (csvName.empty() && !arg.starts_with("--")) {
      csvName = arg;
    } else {
      std::fputs(Usage, stderr);
      return 2;
    }
  }
  if (csvName.empty()) {
    std::fputs(Usage, stderr);
    return 2;
  }
  if (stem.empty()) stem = std::filesystem::path(csvName).stem().string();

  std::ifstream file(csvName, std::ios::binary);
  if (!file) return Fail("cannot open " + csvName);
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const tov::CsvTable table = tov::ParseCsv(text);
  if (!table.Fault.empty())
    return Fail(csvName + ", line " + std::to_string(table.FaultRow) + ": " + table.Fault + "; nothing written");
  tov::Cross cross = tov::ReadCross(table, codes);
  if (!cross.Fault.empty()) return Fail(csvName + ", " + cross.Fault + "; nothing written");

  const auto files = tov::ComposeProject(cross, stem, std::filesystem::path(csvName).filename().string());
  const std::string fault = tov::WriteTogether(folder, files);
  if (!fault.empty()) return Fail(fault + "; nothing written");
  for (const std::string& note : cross.Notes) std::printf("note: %s\n", note.c_str());
  std::printf("%zu markers, %zu lines, %zu traits written to %s:", cross.Markers.size(), cross.NumLines,
              cross.Traits.size(), folder.c_str());
  for (const auto& file : files) std::printf(" %s", file.first.c_str());
  std::printf("\nnext: tov-lint, then tov, in %s\n", folder.c_str());
  return 0;
}
