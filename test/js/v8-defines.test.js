'use strict';
// The V8 configuration macros read from a runtime's headers: none for this
// Node.js, the pointer-compression family for a runtime configured as
// Electron is. The V8_ macros only: the others are node-gyp's business.
const test = require('node:test');
const assert = require('node:assert');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { v8Defines, evaluate } = require('../../cmake/v8-defines.js');

const ownHeaders = path.resolve(process.execPath, '..', '..', 'include', 'node');
// The part of a common.gypi that matters here, in the form Node.js writes it.
const commonGypi = `{
  'variables': {
    'v8_enable_pointer_compression%': 0,
    'v8_enable_31bit_smis_on_64bit_arch%': 0,
    'v8_enable_sandbox%': 0,
    'v8_enable_v8_checks%': 0,
    'conditions': [
      ['target_arch in "arm ia32"', { 'v8_enable_pointer_compression': 0 }],
    ],
  },
  'target_defaults': {
    'conditions': [
      ['v8_enable_v8_checks == 1', {
        'defines': ['V8_ENABLE_CHECKS'],
      }],
      ['v8_enable_pointer_compression == 1', {
        'defines': ['V8_COMPRESS_POINTERS'],
      }],
      ['v8_enable_pointer_compression_shared_cage == 1', {
        'defines': ['V8_COMPRESS_POINTERS_IN_SHARED_CAGE'],
      }],
      ['v8_enable_pointer_compression == 1 and v8_enable_pointer_compression_shared_cage != 1', {
        'defines': ['V8_COMPRESS_POINTERS_IN_ISOLATE_CAGE'],
      }],
      ['v8_enable_pointer_compression == 1 or v8_enable_31bit_smis_on_64bit_arch == 1', {
        'defines': ['V8_31BIT_SMIS_ON_64BIT_ARCH'],
      }],
      ['v8_enable_sandbox == 1', {
        'defines': ['V8_ENABLE_SANDBOX',],
      }],
      ['OS == "win"', {
        'defines': ['WIN32', '_HAS_EXCEPTIONS=0'],
      }],
    ],
  },
}
`;

/** An include folder with that common.gypi and the given config.gypi text. */
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
      expected: ['V8_COMPRESS_POINTERS', 'V8_COMPRESS_POINTERS_IN_ISOLATE_CAGE', 'V8_31BIT_SMIS_ON_64BIT_ARCH',
        'V8_ENABLE_SANDBOX'],
    },
    {
      name: 'a shared cage, the older Python form with comments',
      folder: headersWith(
        "# Do not edit.\n{ 'target_defaults': { 'cflags': [] },\n  'variables': { 'v8_enable_pointer_compression': 1,\n" +
          "                 'v8_enable_pointer_compression_shared_cage': 1 } }\n",
      ),
      expected: ['V8_COMPRESS_POINTERS', 'V8_COMPRESS_POINTERS_IN_SHARED_CAGE', 'V8_31BIT_SMIS_ON_64BIT_ARCH'],
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
  for (const { name, folder, expected } of cases) assert.deepStrictEqual(v8Defines(folder), expected, name);
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
