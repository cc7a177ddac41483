'use strict';
// Writes the loopback engine's colour-space header from the renderer's
// statement of it (lib/renderer/colour-space.js), so the engine composes in
// exactly the colours the renderer converts from.
//
//   node cmake/colour-space.js <colour-space.js> <output header>
const fs = require('fs');
const path = require('path');
const { pathToFileURL } = require('url');

async function main([source, output]) {
  const { colourSpace: c } = await import(pathToFileURL(path.resolve(source)).href);
  const header = `// Generated from ${path.basename(source)} at build time; do not edit.
#pragma once

namespace orva::loopback::colour {

// ${c.name}
inline constexpr double kKr = ${c.kr};
inline constexpr double kKb = ${c.kb};
inline constexpr int kLumaBlack = ${c.luma.black};
inline constexpr int kLumaWhite = ${c.luma.white};
inline constexpr int kChromaZero = ${c.chroma.zero};
inline constexpr int kChromaMin = ${c.chroma.min};
inline constexpr int kChromaMax = ${c.chroma.max};

}  // namespace orva::loopback::colour
`;
  // Unchanged contents keep the file's time, and so the engine's objects.
  if (!fs.existsSync(output) || fs.readFileSync(output, 'utf8') !== header) fs.writeFileSync(output, header);
}

main(process.argv.slice(2)).catch((error) => {
  console.error(`colour-space: ${error.message}`);
  process.exitCode = 1;
});
