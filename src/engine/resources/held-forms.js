// Keeps the last forms of an encrypted page that were on their way over an unencrypted connection.
// The engine's hook refuses those, and with them goes what was entered; once the user agrees, the
// same is sent from here. What this tells is used to find it again, not to decide anything.
(() => {
    'use strict';
    const isEncrypted = location.protocol === 'https:'
        || (location.protocol === 'about:' && isSecureContext);
    if (!isEncrypted)
        return;
    const most = 8;
    const held = new Map();
    // A field may be called as a method of its form, and hide it.
    const attribute = (element, name) => Element.prototype.getAttribute.call(element, name);
    const targetOf = (action) => {
        try {
            return new URL(action, document.baseURI);
        } catch {
            return null;
        }
    };

    let submission = null;
    const noteSubmit = (event) => {
        if (!event.isTrusted)
            return;
        // After it, an event of a shadow tree has no target.
        submission = { form: event.target, submitter: event.submitter, event };
        twice = null;
    };
    // Whether the form is being submitted as the user did it; a script's `submit()` has no event.
    const isSubmitted = (form) => submission?.form === form && !submission.event.defaultPrevented
        && submission.event.eventPhase === Event.NONE;
    // The engine has the same form make its data twice, the one time without the button; engines
    // differ in which, and in how soon. Milliseconds.
    const soon = 500;
    let twice = null;
    // Those who are told of the event after this may add to the data still.
    const keepData = (made, data) => {
        setTimeout(() => {
            if (made.length < 2)
                made.push([...data]);
        });
    };

    const noteData = (event) => {
        if (!event.isTrusted)
            return;
        const form = event.target;
        if (form === twice?.form) {
            keepData(twice.made, event.formData);
            return;
        }
        const made = [];
        keepData(made, event.formData);
        let button = null;
        if (isSubmitted(form)) {
            button = submission.submitter;
            submission = null;
            twice = { form, made };
            setTimeout(() => {
                if (twice?.made === made)
                    twice = null;
            }, soon);
        }
        const chosen = (name) => (button && attribute(button, 'form' + name))
            ?? attribute(form, name);
        const target = targetOf(chosen('action') ?? '');
        if (target?.protocol !== 'http:')
            return;
        const id = crypto.getRandomValues(new Uint32Array(4)).join('-');
        const record = { action: target.href, made };
        for (const name of ['method', 'enctype', 'target'])
            record[name] = chosen(name);
        record['accept-charset'] = attribute(form, 'accept-charset');
        held.set(id, record);
        if (held.size > most)
            held.delete(held.keys().next().value);
        console.debug('%MARK%' + JSON.stringify(['form', window === window.top,
            [id, target.origin, self.origin].join(' ')]));
    };
    const watch = (root) => {
        root.addEventListener('submit', noteSubmit, true);
        root.addEventListener('formdata', noteData, true);
    };
    watch(globalThis);
    // What a form in a shadow tree is told stays in there, but not what the user does with it. Of
    // closed trees nothing is seen.
    const watched = new WeakSet();
    const watchTrees = (event) => {
        for (const each of event.composedPath()) {
            if (each instanceof ShadowRoot && !watched.has(each)) {
                watched.add(each);
                watch(each);
            }
        }
    };
    for (const act of ['pointerdown', 'click', 'keydown'])
        addEventListener(act, watchTrees, true);

    const fieldFor = (name, value) => {
        const field = document.createElement('input');
        field.type = value instanceof File ? 'file' : 'hidden';
        field.name = name;
        if (!(value instanceof File)) {
            field.value = value;
        } else if (value.name || value.size) {
            const files = new DataTransfer();
            files.items.add(value);
            field.files = files.files;
        }
        return field;
    };
    const send = (record) => {
        const form = document.createElement('form');
        for (const name of ['action', 'method', 'enctype', 'target', 'accept-charset']) {
            if (record[name] !== null)
                form.setAttribute(name, record[name]);
        }
        const [entries] = record.made.sort((a, b) => b.length - a.length);
        for (const [name, value] of entries)
            form.append(fieldFor(name, value));
        // Out of the page's sight.
        const host = document.createElement('span');
        host.attachShadow({ mode: 'closed' }).append(form);
        document.documentElement.append(host);
        HTMLFormElement.prototype.submit.call(form);
        host.remove();
    };
    // Only who keeps the form knows its name, which no page is ever told.
    addEventListener('message', (event) => {
        const record = event.isTrusted && typeof event.data === 'string' && held.get(event.data);
        if (!record)
            return;
        event.stopImmediatePropagation();
        held.delete(event.data);
        send(record);
    });
    const callFrames = (around, id, site) => {
        for (let i = 0; i < around.length; ++i) {
            around[i].postMessage(id, site);
            callFrames(around[i], id, site);
        }
    };
    const sendHere = (id) => {
        const record = held.get(id);
        if (record) {
            held.delete(id);
            send(record);
            return true;
        }
        for (let i = 0; i < frames.length; ++i) {
            try {
                if (frames[i].orvaneSendHere?.(id))
                    return true;
            } catch {
                // Another site's.
            }
        }
        return false;
    };
    globalThis.orvaneSendHere = sendHere;
    // True: it was kept here, or in a frame of the same site, and is on its way. Else the frames of
    // `site`, the one it was kept in, are told to send it, and nothing is known of it.
    globalThis.orvaneSendForm = (id, site) => {
        if (sendHere(id))
            return true;
        if (site)
            callFrames(globalThis, id, site);
        return false;
    };
})();
