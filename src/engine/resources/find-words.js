// Finds whole words without changing anything of the page: tells which hit of how many is the
// current one, where all are along the page, and the boxes of those in sight. What a page names like
// a member of the document or of an element hides that here, too, so their classes are asked.
(() => {
    'use strict';
    const query = %QUERY%;
    const mostHits = 10000;
    const longestMs = 1500;
    const mostBoxes = 500;
    const stepsOfMarks = 1000;
    const unseen = new Set(['script', 'style', 'noscript', 'template', 'textarea', 'select', 'title']);
    const inline = new Set(['a', 'abbr', 'b', 'bdi', 'bdo', 'cite', 'code', 'del', 'dfn', 'em', 'font',
        'i', 'ins', 'kbd', 'label', 'mark', 'q', 's', 'samp', 'small', 'span', 'strike', 'strong', 'sub',
        'sup', 'tt', 'u', 'var', 'wbr']);
    const get = (type, name, object) =>
        Object.getOwnPropertyDescriptor(type.prototype, name).get.call(object);
    const nameOf = (element) => get(Element, 'localName', element);
    const parentOf = (node) => get(Node, 'parentNode', node);
    const root = get(Document, 'documentElement', document);

    const isWordSign = (sign) => /[\p{L}\p{N}\p{M}_]/u.test(sign);
    const pattern = () => {
        const words = query.text.split(/\s+/u);
        const signs = Array.from(query.text);
        const source = words.map((word) => word.replace(/[.*+?^${}()|[\]\\/]/g, '\\$&')).join('\\s+');
        const before = isWordSign(signs[0]) ? '(?<![\\p{L}\\p{N}\\p{M}_])' : '';
        const behind = isWordSign(signs[signs.length - 1]) ? '(?![\\p{L}\\p{N}\\p{M}_])' : '';
        return new RegExp(before + source + behind, query.matchCase ? 'gu' : 'giu');
    };
    const rangeOf = (hit) => {
        const range = new Range();
        try {
            range.setStart(hit.first, hit.from);
            range.setEnd(hit.last, hit.to);
        } catch {
            return null;
        }
        return get(Node, 'isConnected', hit.first) ? range : null;
    };
    const boxOf = (hit) => rangeOf(hit)?.getClientRects()[0];
    const blockOf = (text) => {
        let node = parentOf(text);
        while (node instanceof Element && inline.has(nameOf(node)))
            node = parentOf(node);
        return node;
    };

    const collect = () => {
        const found = { hits: [], isMore: false };
        const wanted = pattern();
        const begun = performance.now();
        let parts = [];
        let text = '';
        const place = (offset, isEnd) => {
            let low = 0;
            for (let high = parts.length - 1; low < high;) {
                const middle = (low + high + 1) >> 1;
                if (parts[middle].start + (isEnd ? 1 : 0) <= offset)
                    low = middle;
                else
                    high = middle - 1;
            }
            return [parts[low].node, offset - parts[low].start];
        };
        const search = () => {
            for (const match of text.matchAll(wanted)) {
                if (found.hits.length === mostHits || performance.now() - begun > longestMs) {
                    found.isMore = true;
                    break;
                }
                const [first, from] = place(match.index, false);
                const [last, to] = place(match.index + match[0].length, true);
                const hit = { first, from, last, to };
                if (boxOf(hit))
                    found.hits.push(hit);
            }
            parts = [];
            text = '';
        };
        const accept = (node) => node instanceof Element && unseen.has(nameOf(node))
            ? NodeFilter.FILTER_REJECT : NodeFilter.FILTER_ACCEPT;
        const walker = Document.prototype.createTreeWalker.call(document, root,
            NodeFilter.SHOW_TEXT | NodeFilter.SHOW_ELEMENT, accept);
        let block = null;
        for (let node = walker.nextNode(); node && !found.isMore; node = walker.nextNode()) {
            if (node instanceof Element) {
                if (!inline.has(nameOf(node)))
                    search();
                continue;
            }
            const around = blockOf(node);
            if (around !== block)
                search();
            block = around;
            parts.push({ node, start: text.length });
            text += get(CharacterData, 'data', node);
        }
        search();
        return found;
    };

    const isInSight = (box) => box.bottom > 0 && box.right > 0 && box.top < innerHeight
        && box.left < innerWidth;
    const bringIntoSight = (hit) => {
        const box = boxOf(hit);
        if (box && !(box.top >= 0 && box.bottom <= innerHeight && box.left >= 0
                     && box.right <= innerWidth))
            Element.prototype.scrollIntoView.call(parentOf(hit.first),
                { block: 'center', inline: 'nearest', behavior: 'instant' });
    };

    if (query.isEnd) {
        const range = globalThis.orvaneWords && rangeOf(
            globalThis.orvaneWords.hits[globalThis.orvaneWords.active] ?? {});
        if (range)
            getSelection().setBaseAndExtent(range.startContainer, range.startOffset,
                range.endContainer, range.endOffset);
        delete globalThis.orvaneWords;
        return null;
    }
    let state = globalThis.orvaneWords;
    if (!state || query.isNew) {
        state = globalThis.orvaneWords = { ...collect(), active: 0 };
        const next = state.hits.findIndex((hit) => (boxOf(hit)?.top ?? -1) >= 0);
        state.active = Math.max(0, next);
    } else if (query.step && state.hits.length > 0) {
        state.active = (state.active + query.step + state.hits.length) % state.hits.length;
    }
    const current = state.hits[state.active];
    if (current && (query.isNew || query.step))
        bringIntoSight(current);
    const height = get(Element, 'scrollHeight', root);
    const marks = new Set();
    const boxes = [];
    for (const hit of state.hits) {
        const box = boxOf(hit);
        if (!box)
            continue;
        marks.add(Math.round((box.top + scrollY) / height * stepsOfMarks));
        if (isInSight(box) && (boxes.length < mostBoxes || hit === current))
            boxes.push([box.left, box.top, box.width, box.height, hit === current ? 1 : 0]);
    }
    return {
        active: current ? state.active + 1 : 0,
        hits: state.hits.length,
        isMore: state.isMore,
        marks: Array.from(marks, (mark) => mark / stepsOfMarks),
        boxes,
        bar: height > innerHeight ? innerWidth - get(Element, 'clientWidth', root) : 0,
    };
})();
