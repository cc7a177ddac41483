// Types of orva-engine/events. The event map, OrvaEventMap, is generated with
// the rest of the declarations from the event description; these name only
// the emitter's methods, over that map. They need no declarations of Node.js
// itself: at run time the emitter is an EventEmitter of the 'events' module.
import type { OrvaEngineWrapper, OrvaEventMap } from './index.js';

export type { OrvaEventMap };

/** The name of every event the emitter emits. */
export type OrvaEventName = keyof OrvaEventMap;

/** A listener of event `K`: it receives the event's arguments by name, or its payload. */
export type OrvaEventListener<K extends OrvaEventName> = (event: OrvaEventMap[K]) => void;

/**
 * The EventEmitter that attach() answers: it emits every engine event under
 * its name, with one value: the event's arguments by name, or its payload.
 */
export interface OrvaEvents {
  on<K extends OrvaEventName>(name: K, listener: OrvaEventListener<K>): this;
  addListener<K extends OrvaEventName>(name: K, listener: OrvaEventListener<K>): this;
  prependListener<K extends OrvaEventName>(name: K, listener: OrvaEventListener<K>): this;
  once<K extends OrvaEventName>(name: K, listener: OrvaEventListener<K>): this;
  prependOnceListener<K extends OrvaEventName>(name: K, listener: OrvaEventListener<K>): this;
  off<K extends OrvaEventName>(name: K, listener: OrvaEventListener<K>): this;
  removeListener<K extends OrvaEventName>(name: K, listener: OrvaEventListener<K>): this;
  removeAllListeners(name?: OrvaEventName): this;
  emit<K extends OrvaEventName>(name: K, event: OrvaEventMap[K]): boolean;
  listenerCount(name: OrvaEventName): number;
  listeners<K extends OrvaEventName>(name: K): OrvaEventListener<K>[];
  rawListeners<K extends OrvaEventName>(name: K): Function[];
  eventNames(): OrvaEventName[];
  setMaxListeners(count: number): this;
  getMaxListeners(): number;
  /**
   * Clears the engine's handler, whichever function it is by then. Listeners
   * stay; attach() binds the emitter again.
   */
  detach(): void;
}

/**
 * Makes the one emitter the handler of `engine` (engine.setCallback) and
 * answers it; every call answers the same emitter and binds it again. Throws
 * a TypeError for anything but the process-wide wrapper
 * (OrvaEngineWrapper.createOrvaEngine()): a wrapper made with `new` drops its
 * events.
 */
export declare function attach(engine: OrvaEngineWrapper): OrvaEvents;
