#include "input/Phenotypes.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include "core/Messages.h"
#include "core/RunData.h"
#include "text/Format.h"
#include "text/FreeFormatRead.h"

namespace tov {

namespace {

// Process-wide by design: a missing token seen in any row changes the
// reading of -100 in every later row of the process.
bool missingTokensSeen = false;

// Each token is read as a real by a free-format read of its own text.
bool ConvertTokens(std::int32_t numTokens, const TokenRow& tokens, ArrayView<float, 1> values,
                   std::int32_t& statusCode) {
  TextInput text;
  for (std::int64_t line = 1; line <= numTokens; ++line) {
    text.OpenText(tokens.Token(line));
    FreeFormatRead read(text);
    if (!(read.Real(values(line)) && read.Finish())) {
      statusCode = 2407;
      ReportPhenotype(statusCode, static_cast<std::int32_t>(line), tokens.Token(line));
      return false;
    }
  }
  return true;
}

// One free-format read of the trait name and the value tokens of a row.
bool ReadRow(TextInput& input, std::int32_t populationSize, std::string& name, TokenRow& tokens) {
  FreeFormatRead read(input);
  const bool ok = read.Text(name, TraitNameLength);
  return ok && tokens.Read(read, populationSize) && read.Finish();
}

}  // namespace

bool IsMissingToken(std::string_view token) {
  static constexpr std::string_view MissingTokens[] = {"NA", "na", "*", ".", "-"};
  const std::string_view text = TrimTrailing(token);
  for (std::string_view missing : MissingTokens)
    if (text == missing) return true;
  return false;
}

bool PhenotypeHasMissingTokens() { return missingTokensSeen; }

void ClearPhenotypeMissingTokens() { missingTokensSeen = false; }

void ConvertPhenotypeRow(std::int32_t numTokens, TokenRow& tokens, ArrayView<float, 1> values,
                         std::int32_t& statusCode) {
  for (std::int64_t line = 1; !missingTokensSeen && line <= numTokens; ++line)
    if (IsMissingToken(tokens.Token(line))) missingTokensSeen = true;

  if (missingTokensSeen) {
    for (std::int64_t line = 1; line <= numTokens; ++line)
      if (IsMissingToken(tokens.Token(line))) tokens.Set(line, "-9999.0");
    ConvertTokens(numTokens, tokens, values, statusCode);
    return;
  }
  if (!ConvertTokens(numTokens, tokens, values, statusCode)) return;
  // Without missing tokens, -100 is the file's way to write a missing value.
  for (std::int64_t line = 1; line <= numTokens; ++line)
    if (std::abs(values(line) + 100.0f) < 0.0001f) values(line) = MissingValue;
}

void ReadPhenotypes(TextInput& input, std::int32_t numTraits, std::int32_t numEnvs, std::int32_t numReps,
                    std::int32_t populationSize, Array<float, 4>& phenotype, Array<std::string, 3>& traitName,
                    std::int32_t& statusCode) {
  SkipComments(input);
  TokenRow tokens(PhenotypeTokenLength);
  // Rows are kept in reading order, each one only once it has been read,
  // and go into the arrays when the block is complete: counts that the
  // file cannot back never become an allocation.
  std::vector<std::string> names;
  std::vector<Array<float, 1>> rows;
  for (std::int64_t trait = 1; trait <= numTraits; ++trait) {
    const auto traitId = static_cast<std::int32_t>(trait);
    for (std::int64_t env = 1; env <= numEnvs; ++env) {
      for (std::int64_t rep = 1; rep <= numReps; ++rep) {
        std::string name(TraitNameLength, ' ');
        if (!ReadRow(input, populationSize, name, tokens)) {
          statusCode = 2405;
          ReportPhenotype(statusCode, traitId, "");
          return;
        }
        Array<float, 1> values;
        values.Allocate(populationSize);
        ConvertPhenotypeRow(populationSize, tokens, values.View(), statusCode);
        if (statusCode != 0) {
          statusCode = 2406;
          ReportPhenotype(statusCode, traitId, name);
          return;
        }
        names.push_back(std::move(name));
        rows.push_back(std::move(values));
      }
    }
  }

  phenotype.Allocate(populationSize, numTraits, numEnvs, numReps);
  traitName.Allocate(numTraits, numEnvs, numReps);
  std::size_t row = 0;
  for (std::int64_t trait = 1; trait <= numTraits; ++trait) {
    for (std::int64_t env = 1; env <= numEnvs; ++env) {
      for (std::int64_t rep = 1; rep <= numReps; ++rep, ++row) {
        traitName(trait, env, rep) = std::move(names[row]);
        std::copy_n(rows[row].Data(), populationSize, &phenotype(1, trait, env, rep));
        rows[row].Release();
      }
    }
  }
}

}  // namespace tov
