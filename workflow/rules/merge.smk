# The merge of the data folder, range by range.


# How many ranges there are is known when they are planned.
checkpoint plan:
    input:
        f"results/{NAME}.ST/{NAME}.stlengths",
    output:
        ranges=f"{ARRAY}.ranges.tsv",
        estimate="results/estimate.tsv",
    params:
        program=config["program"],
        ranges=config["ranges"],
    log:
        "logs/plan.log",
    shell:
        f"({{params.program:q}} plan {PLACES} --ranges {{params.ranges}} --force && "
        f"{{params.program:q}} plan {PLACES} --estimate --ranges {{params.ranges}}"
        " >{output.estimate:q}) 2>{log:q}"


rule merge:
    input:
        f"{ARRAY}.ranges.tsv",
    output:
        [
            path if not config["join"] else temp(path)
            for path in parts(["{range}"])
        ],
    params:
        program=config["program"],
        stage=["--stage", config["stage"]] if config["stage"] else [],
        memory=lambda wildcards, resources: int(resources.mem_mb * 0.95),
    log:
        "logs/merge/{range}.log",
    benchmark:
        "results/benchmarks/merge/{range}.tsv"
    resources:
        mem_mb=lambda wildcards, attempt: step_memory("merge", attempt),
        runtime=lambda wildcards, attempt: step_minutes("merge", attempt),
    shell:
        f"{{params.program:q}} merge {PLACES} --range {{wildcards.range}}"
        " --memory {params.memory}M {params.stage:q} 2>{log:q}"


# A part is proved with the seam to the one before it.
rule check:
    input:
        f"{ARRAY}.ranges.tsv",
        lambda wildcards: parts(
            range(max(0, int(wildcards.range) - 1), int(wildcards.range) + 1)
        ),
    output:
        "results/proofs/{range}.txt",
    params:
        program=config["program"],
    log:
        "logs/check/{range}.log",
    benchmark:
        "results/benchmarks/check/{range}.tsv"
    resources:
        mem_mb=lambda wildcards, attempt: step_memory("check", attempt),
        runtime=lambda wildcards, attempt: step_minutes("check", attempt),
    shell:
        f"{{params.program:q}} check {PLACES} --range {{wildcards.range}}"
        " >{output:q} 2>{log:q} || {{ cat {output:q} >>{log:q}; exit 1; }}"


def proofs(wildcards):
    count = len(planned_ranges()) if config["check"] else 0
    return [f"results/proofs/{r}.txt" for r in range(count)]


def all_parts(wildcards):
    return parts(range(len(planned_ranges())))


# What is wrong is not joined. The parts go when nothing needs them any more.
rule join:
    input:
        f"{ARRAY}.ranges.tsv",
        all_parts,
        proofs,
    output:
        joined,
    params:
        program=config["program"],
    log:
        "logs/join.log",
    benchmark:
        "results/benchmarks/join.tsv"
    resources:
        mem_mb=lambda wildcards, attempt: step_memory("join", attempt),
        runtime=lambda wildcards, attempt: step_minutes("join", attempt),
    shell:
        f"{{params.program:q}} join {PLACES} --keep 2>{{log:q}}"


rule summary:
    input:
        ranges=f"{ARRAY}.ranges.tsv",
        proofs=proofs,
        merged=lambda wildcards: joined if config["join"] else all_parts(wildcards),
    output:
        "results/summary.tsv",
    log:
        "logs/summary.log",
    script:
        "../scripts/summary.py"
