'use strict';
// Script values to native ones at their edges, through fields and methods.
const test = require('node:test');
const assert = require('node:assert/strict');
const { constants } = require('node:buffer');
const { orva, thrown } = require('./lib/orva');

// [record, field, declared type, value, expected read back (or an Error message fragment)]
const FIELD_CASES = [
  ['VideoEncParam', 'fps', 'uint32_t', 2147483647, 2147483647],
  ['VideoEncParam', 'fps', 'uint32_t', -0.5, 0],
  ['VideoEncParam', 'fps', 'uint32_t', 7.9, 7],
  ['VideoEncParam', 'fps', 'uint32_t', 3000000000, Error],
  ['VideoEncParam', 'fps', 'uint32_t', 2147483648, Error],
  ['VideoEncParam', 'fps', 'uint32_t', -1, Error],
  ['VideoEncParam', 'fps', 'uint32_t', NaN, Error],
  ['VideoEncParam', 'fps', 'uint32_t', '5', Error],
  ['Rect', 'x', 'int', 4294967297, 1],
  ['Rect', 'x', 'int', -2147483649, 2147483647],
  ['Rect', 'x', 'int', 2.9, 2],
  ['Rect', 'x', 'int', -2.9, -2],
  ['Rect', 'x', 'int', NaN, 0],
  ['Rect', 'x', 'int', '5', Error],
  ['Rect', 'x', 'int', true, Error],
  ['Rect', 'x', 'int', undefined, Error],
  ['Rect', 'x', 'int', {}, Error],
  ['NetworkStats', 'LiveVideoSentBytes', 'long', 4294967298, 2],
  ['RenderParams', 'mirror', 'bool', true, true],
  ['RenderParams', 'mirror', 'bool', 1, Error],
  ['RenderParams', 'mirror', 'bool', 'true', Error],
  ['RenderParams', 'alpha', 'float', 0.5, 0.5],
  ['RenderParams', 'alpha', 'float', 0.1, Math.fround(0.1)],
  ['RenderParams', 'alpha', 'float', Infinity, Infinity],
  ['RenderParams', 'alpha', 'float', -Infinity, -Infinity],
  ['RenderParams', 'alpha', 'float', NaN, NaN],
  ['RenderParams', 'alpha', 'float', 3.4028234663852886e38, 3.4028234663852886e38],
  ['RenderParams', 'alpha', 'float', 1e39, Error],
  ['RenderParams', 'alpha', 'float', -1e39, Error],
  ['Window', 'id', 'uint64_t', 2 ** 53, 2 ** 53],
  ['Window', 'id', 'uint64_t', 1.5, 1],
  ['Window', 'id', 'uint64_t', -1, Error],
  ['Window', 'id', 'uint64_t', 2 ** 63, Error],
  ['SourceGreenInfo', 'green_color', 'int64_t', -(2 ** 40), -(2 ** 40)],
  ['SourceGreenInfo', 'green_color', 'int64_t', 2 ** 70, 9223372036854775807],
  ['NetworkStats', 'CpuAppUsage', 'double', 0.125, 0.125],
  ['RenderParams', 'rotation', 'Orva::Rtc::VideoRotation', 270, 270],
  ['RenderParams', 'rotation', 'Orva::Rtc::VideoRotation', 'x', Error],
];

test('numbers and booleans convert at their edges', () => {
  for (const [record, field, type, value, expected] of FIELD_CASES) {
    const object = new orva[record]();
    const label = `${record}.${field} = ${String(value)}`;
    if (expected === Error) {
      const before = object[field];
      assert.equal(thrown(() => { object[field] = value; }),
        `in method '${record}_${field}_set', argument 2 of type '${type}'`, label);
      assert.equal(object[field], before, `${label} left the field alone`);
    } else {
      object[field] = value;
      assert.equal(object[field], expected, label);
    }
  }
});

test('method arguments use the same converters', () => {
  const engine = orva.OrvaEngine.SDK();
  assert.equal(thrown(() => engine.ScaleMicrophone(1e39)),
    "in method 'OrvaEngine_ScaleMicrophone', argument 2 of type 'float'");
  assert.equal(engine.ScaleMicrophone(Infinity), undefined);
  assert.equal(thrown(() => engine.MuteSpeaker(1)), "in method 'OrvaEngine_MuteSpeaker', argument 2 of type 'bool'");
  assert.equal(thrown(() => engine.SetMicrophoneVolume('5')),
    "in method 'OrvaEngine_SetMicrophoneVolume', argument 2 of type 'int'");
  // 4294967297 keeps its low 32 bits: the engine receives 1.
  const modes = new orva.ScreenCaptureModeList();
  modes.Add(4294967297);
  assert.equal(modes.Get(0), 1);
});

test('texts cross as UTF-8 both ways, zero bytes included', () => {
  const info = new orva.VolumeInfo();
  for (const text of ['', 'plain', 'caf\u00e9 \u4e2d\u6587 \ud83d\ude00', 'a\u0000b', 'x'.repeat(5000)]) {
    info.userId = text;
    assert.equal(info.userId, text);
  }
  const stats = new orva.OrvaRemoteStatistics();
  assert.equal(stats.userId, undefined);
  stats.userId = '\u4e2d\u6587';
  assert.equal(stats.userId, '\u4e2d\u6587');
  stats.userId = 'a\u0000b';
  assert.equal(stats.userId, 'a', 'a char const * field reads up to its first zero byte');
  stats.userId = null;
  assert.equal(stats.userId, undefined);
});

// V8 refuses UTF-8 of more bytes than its longest string before decoding it;
// three bytes a character make such a text of a string that fits.
test('a text of more UTF-8 bytes than the longest string comes back whole', () => {
  const text = '\u4e2d'.repeat(Math.ceil((constants.MAX_STRING_LENGTH + 1) / 3));
  for (const [record, field] of [['Speaker', 'name'], ['OrvaRemoteStatistics', 'userId']]) {
    const object = new orva[record]();
    object[field] = text;
    assert.ok(object[field] === text, `${record}.${field}`);
    object[field] = '';
  }
});
