# Each group of genomes becomes a data folder; all of these become one.


# Names of genomes may hold anything but line ends. Here alone they are on a
# command line, and quoted. Snakemake takes braces in a name for a wildcard: such
# a file is prepared like others, but a change to it is not noticed.
rule list_group:
    input:
        lambda wildcards: [
            path for path in genomes_of(wildcards.group) if "{" not in path
        ],
    output:
        "results/groups/{group}.txt",
    params:
        genomes=lambda wildcards: genomes_of(wildcards.group),
    shell:
        "printf '%s\\n' {params.genomes:q} >{output:q}"


rule prepare:
    input:
        "results/groups/{group}.txt",
    output:
        "results/prepared/{group}.ST/{group}.stlengths",
    params:
        program=config["program"],
        strands=config["strands"],
        ambiguous=config["ambiguous"],
    log:
        "logs/prepare/{group}.log",
    benchmark:
        "results/benchmarks/prepare/{group}.tsv"
    threads: config["prepare_threads"]
    resources:
        mem_mb=lambda wildcards, attempt: prepare_memory(wildcards.group, attempt),
        runtime=lambda wildcards, attempt: prepare_minutes(wildcards.group, attempt),
    shell:
        "mapfile -t genomes <{input:q} && "
        "{params.program:q} prepare -o results/prepared -p {wildcards.group}"
        " --zero-origin --force -j {threads} --strands {params.strands}"
        ' --ambiguous {params.ambiguous} -- "${{genomes[@]}}" >{log:q} 2>&1'


rule gather:
    input:
        [f"results/prepared/{g}.ST/{g}.stlengths" for g in range(group_count())],
    output:
        f"results/{NAME}.ST/{NAME}.stlengths",
    params:
        python=sys.executable,
        script=os.path.join(workflow.basedir, "scripts", "gather.py"),
        groups=group_count(),
    log:
        "logs/gather.log",
    shell:
        "{params.python:q} {params.script:q} results/prepared {params.groups}"
        f" results {NAME} >{{log:q}} 2>&1"
