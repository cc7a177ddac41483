'use strict';
// Counts what the engine reports between two live lines of the demo, and
// writes those lines.

class Meter {
  #events = new Map();
  #delivered = 0;
  #invalid = 0;
  #dropped = 0;
  #nextFrame; // the engine numbers its frames: a gap is frames that never reached script
  #stats;

  /** Any event but a frame. */
  event(name, payload) {
    this.#events.set(name, (this.#events.get(name) ?? 0) + 1);
    if (name === 'OnNetworkStats') this.#stats = payload;
  }

  /** The payload of an "OnVideoFrame". */
  frame({ valid, extra }) {
    if (valid) this.#delivered += 1;
    else this.#invalid += 1;
    if (this.#nextFrame !== undefined && extra > this.#nextFrame) this.#dropped += extra - this.#nextFrame;
    this.#nextFrame = extra + 1;
  }

  /** One line for what happened since the last one; the counts start again. */
  line(label) {
    const frames = `frames ok ${this.#delivered} invalid ${this.#invalid} dropped ${this.#dropped}`;
    const events = [...this.#events].map(([name, count]) => (count > 1 ? `${name} x${count}` : name));
    this.#events.clear();
    this.#delivered = this.#invalid = this.#dropped = 0;
    return [label.padStart(5), frames, network(this.#stats), events.join(', ') || '-'].join(' | ');
  }
}

const mbits = (bitsPerSecond) => `${(bitsPerSecond / 1e6).toFixed(2)} Mbit/s`;

// The latest statistics, however old: they come at the engine's own pace.
function network(stats) {
  if (!stats) return 'no network statistics yet';
  const peers = (stats.remoteStatistics ?? []).map(
    (peer) => `${peer.userId} size ${peer.width}x${peer.height} fps ${peer.frameRate} delay ${peer.point2PointDelay} ms`,
  );
  const link = `up ${mbits(stats.OutBps)} down ${mbits(stats.InBps)} rtt ${stats.RealtimeRtt} ms`;
  return [link, ...peers].join(', ');
}

module.exports = { Meter };
