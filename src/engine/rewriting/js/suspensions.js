// yield and await: the frame is left around the suspension and entered again after it.

passMethods({
    suspension(node, context) {
        if (!context.suspends) {
            this.expression(node.argument, context);
            return;
        }
        const resume = context.awaitsInHead ? this.resumeText(context, node.start) + ',' : '';
        const suspend = resume + this.suspendText(context);
        this.insert(node.start, ` ${this.prefix}k(`);
        if (node.delegate)
            this.delegation(node, context, suspend);
        else if (node.argument)
            this.transit(node.argument, context, suspend);
        else
            this.insert(node.end, ` (${suspend},void 0)`);
        const after = `${context.depth}=${this.enterAgainText(context, node.start)}`;
        this.insert(node.end, `,${this.isDebug ? this.scopeOfFrameText(after, context) : after})`);
    },

    delegation(node, context, suspend) {
        const {argument} = node;
        this.insert(argument.start, ` (${this.r}=${this.prefix}Y(`);
        this.expression(argument, context);
        this.insert(argument.end, `,()=>{${this.resumeText(context, node.start)}},` +
            `()=>{${this.suspendText(context)}},${context.isAsyncGenerator}),${suspend},${this.r})`);
    },

    /** Evaluates an expression, then something else, then gives the expression's value. */
    transit(node, context, then) {
        const open = isAnonymousDefinition(node) ? '(0,' : '(';
        this.insert(node.start, ` (${this.r}=${open}`);
        this.expression(node, context);
        this.insert(node.end, `),${then},${this.r})`);
    },

    /**
     * Each step of for await suspends, and so does closing the iterator, whichever way the body is
     * left: the frame is entered for the body only.
     */
    forAwait(node, context, names) {
        const {right, body} = node;
        this.transit(right, context, this.suspendText(context));
        const resume = this.resumeText(context, node.start);
        this.insert(body.start, `{${resume};try{`);
        this.loopBody(body, context, names);
        this.insert(body.end, `}catch(${this.e}){${resume};throw ${this.prefix}x(${this.e},${context.depth})}` +
            `finally{if(${context.depth}){${this.suspendText(context)}}}}`);
        this.insert(node.end, this.quiet(resume, context));
    },
});
