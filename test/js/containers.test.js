'use strict';
// StringMap, ScreenVector and WindowVector.
const test = require('node:test');
const assert = require('node:assert/strict');
const { spawnSync } = require('node:child_process');
const { orva, thrown, root } = require('./lib/orva');

test('StringMap', () => {
  const map = new orva.StringMap();
  assert.equal(map.empty(), true);
  map.set('b', '2');
  map.set('a', '1');
  map.set('a', 'one');
  assert.deepEqual([map.size(), map.get('a'), map.has_key('b'), map.has_key('z'), map.empty()], [2, 'one', true, false, false]);
  assert.equal(thrown(() => map.del('z')), 'key not found');
  assert.equal(map.size(), 2, 'a failed del leaves the map alone');
  const copy = new orva.StringMap(map);
  map.del('a');
  assert.deepEqual([map.size(), copy.size(), copy.get('a')], [1, 2, 'one']);
  map.clear();
  assert.equal(map.size(), 0);
  assert.equal(thrown(() => map.get(1)), "in method 'StringMap_get', argument 2 of type 'std::string const &'");
});

for (const [vectorType, elementType, key] of [['ScreenVector', 'Screen', 'name'], ['WindowVector', 'Window', 'title']]) {
  test(vectorType, () => {
    const vector = new orva[vectorType]();
    assert.equal(vector.isEmpty(), true);
    const item = new orva[elementType]();
    item[key] = 'first';
    vector.add(item);
    item[key] = 'second';
    vector.add(item);
    assert.deepEqual([vector.size(), vector.get(0)[key], vector.get(1)[key]], [2, 'first', 'second']);
    vector.get(0)[key] = 'changed';
    assert.equal(vector.get(0)[key], 'changed', 'an element proxy writes into the vector');
    assert.equal(vector.get(4294967296)[key], 'changed', 'the index keeps its low 32 bits');
    for (const index of [-1, 2]) assert.equal(thrown(() => vector.get(index)), 'vector index out of range');
    assert.equal(thrown(() => vector.set(2, item)), 'vector index out of range');
    vector.set(1, item);
    vector.reserve(10);
    assert.ok(vector.capacity() >= 10);
    assert.equal(thrown(() => vector.reserve(-1)),
      `in method '${vectorType}_reserve', argument 2 of type 'std::vector< Orva::Rtc::${elementType} >::size_type'`);
    assert.equal(new orva[vectorType](3).size(), 3);
    for (const count of [2 ** 21, 2 ** 31, 2 ** 53]) {
      const type = `'std::vector< Orva::Rtc::${elementType} >::size_type'`;
      assert.equal(thrown(() => vector.reserve(count)), `in method '${vectorType}_reserve', argument 2 of type ${type}`);
      assert.equal(thrown(() => new orva[vectorType](count)), `Illegal arguments for construction of _exports_${vectorType}`);
    }
    assert.equal(new orva[vectorType](vector).size(), 2);
    vector.clear();
    assert.equal(vector.size(), 0);
  });
}

const sanitized = /asan/.test(process.env.LD_PRELOAD ?? '');
test('running out of memory is a script error, not the end of the process', {
  skip: sanitized && 'the sanitizer runtime reserves more address space than the limit allows',
}, () => {
  // Dropped vectors of a million screens each, under a 3 GB address-space limit.
  const script = `
    const orva = require(${JSON.stringify(root)});
    let made = 0;
    try { for (;;) { new orva.ScreenVector(2 ** 20); made += 1; } } catch (error) { console.log(error.message, made > 0); }
    console.log(new orva.Rect().x);
  `;
  const result = spawnSync('sh', ['-c', 'ulimit -v 3000000 && exec "$0" -e "$1"', process.execPath, script],
    { cwd: root, encoding: 'utf8', timeout: 60000 });
  assert.equal(result.stderr, '');
  assert.equal(result.stdout, 'out of memory true\n0\n');
  assert.equal(result.status, 0);
});
