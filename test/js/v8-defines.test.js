'use strict';
// The V8 configuration macros read from a runtime's headers: none for this
// Node.js, the pointer-compression family for a runtime configured as
// Electron is.
const test = require('node:test');
const assert = require('node:assert');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { v8Defines, evaluate } = require('../../cmake/v8-defines.js');

const ownHeaders = path.resolve(process.execPath, '..', '..', 'include', 'node');
const commonGypi = fs.readFileSync(path.join(ownHeaders, 'common.gypi'), 'utf8');

/** An include folder with this Node.js's common.gypi and the given config.gypi text. */
function headersWith(config) {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'orva-v8-defines-'));
  fs.writeFileSync(path.join(folder, 'common.gypi'), commonGypi);
  fs.writeFileSync(path.join(folder, 'config.gypi'), config);
  return folder;
}

test('the macros follow the configured V8', () => {
  const cases = [
    { name: "this Node.js's own headers", folder: ownHeaders, expected: [] },
    {
      name: 'pointer compression and the sandbox, JSON form',
      folder: headersWith(
        JSON.stringify({ variables: { v8_enable_pointer_compression: 1, v8_enable_sandbox: 1, target_arch: 'x64' } }),
      ),
      has: ['V8_COMPRESS_POINTERS', 'V8_31BIT_SMIS_ON_64BIT_ARCH', 'V8_ENABLE_SANDBOX'],
      lacks: ['V8_COMPRESS_POINTERS_IN_SHARED_CAGE', 'V8_ENABLE_CHECKS'],
    },
    {
      name: 'a shared cage, the older Python form with comments',
      folder: headersWith(
        "# Do not edit.\n{ 'target_defaults': { 'cflags': [] },\n  'variables': { 'v8_enable_pointer_compression': 1,\n" +
          "                 'v8_enable_pointer_compression_shared_cage': 1 } }\n",
      ),
      has: ['V8_COMPRESS_POINTERS', 'V8_COMPRESS_POINTERS_IN_SHARED_CAGE', 'V8_31BIT_SMIS_ON_64BIT_ARCH'],
      lacks: ['V8_COMPRESS_POINTERS_IN_ISOLATE_CAGE', 'V8_COMPRESS_POINTERS_IN_MULTIPLE_CAGES', 'V8_ENABLE_SANDBOX'],
    },
    {
      // A key of a build configuration is not a variable: node-gyp ignores it.
      name: 'a configuration key named like a variable',
      folder: headersWith(
        JSON.stringify({
          variables: {},
          target_defaults: { configurations: { Release: { v8_enable_v8_checks: 1 } } },
        }),
      ),
      expected: [],
    },
  ];
  for (const { name, folder, expected, has = [], lacks = [] } of cases) {
    const defines = v8Defines(folder);
    if (expected) assert.deepStrictEqual(defines, expected, name);
    for (const define of has) assert.ok(defines.includes(define), `${name}: ${define} in ${defines}`);
    for (const define of lacks) assert.ok(!defines.includes(define), `${name}: ${define} not in ${defines}`);
  }
});

test('gyp conditions evaluate as gyp does', () => {
  const variables = { a: 1, b: 0, os: 'win' };
  const cases = [
    ['a == 1', true],
    ['a != 1', false],
    ['missing == 1', false],
    ['missing == 0', true],
    ['a == 1 and b == 1', false],
    ['a == 0 or b == 0', true],
    ['not a == 1', false],
    ['a == 1 and not (b == 1 or os == "mac")', true],
    ["os == 'win'", true],
    ['os in "mac win"', true],
    ['os in "mac linux"', false],
  ];
  for (const [condition, expected] of cases) assert.strictEqual(evaluate(condition, variables), expected, condition);
  for (const unreadable of ['a == ', '(a == 1', 'a == 1 b', 'a == == 1']) {
    assert.throws(() => evaluate(unreadable, variables), /condition|ends too early|parentheses|cannot read/, unreadable);
  }
});
