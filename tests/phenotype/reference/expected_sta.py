# Expected ".sta" of a project from its phenotype rows, in float64:
# the missing rule, line means, statistics, W test (AS 181 in python),
# analyses of variance (numpy / scipy).
import sys, math
sys.path.insert(0, __import__('os').path.dirname(__file__))
import numpy as np
from float64_reference import stats, oneway, twoway
from w_test import swilk
from sta_layout import *
NA=None
def lines_env(cells):        # cells[line][rep] -> kept lines, filled rows
    kept=[]
    for i,row in enumerate(cells):
        valid=[v for v in row if v is not NA]
        if not valid: continue
        m=sum(valid)/len(valid)
        kept.append((i+1,[m if v is NA else v for v in row]))
    return kept
def lines_all(cells):        # cells[line][env][rep]
    kept=[]
    for i,envs in enumerate(cells):
        valid=[v for e in envs for v in e if v is not NA]
        if not valid: continue
        m=sum(valid)/len(valid)
        kept.append((i+1,[[m if v is NA else v for v in e] for e in envs]))
    return kept
def summary_row(t,name,means):
    if not means: return missing_row(t,name)
    s=stats(means)
    W,P=swilk(means) if len(means)>=3 else (-9999.0,-9999.0)
    return row(t,name,s,W,P)
def sta(traits,E,R):   # traits: list of (name, cells[line][env][rep])
    out=[HEAD]
    for t,(name,cells) in enumerate(traits,1):
        for e in range(E):
            k=lines_env([c[e] for c in cells])
            out.append(summary_row(t,name,[np.mean(v) for _,v in k]))
        k=lines_all(cells)
        out.append(summary_row(t,name,[np.mean(v) for _,v in k]))
    out.append('')
    if R>=2:
        for t,(name,cells) in enumerate(traits,1):
            for e in range(E):
                k=lines_env([c[e] for c in cells])
                out+=oneway_lines(oneway([v for _,v in k])) if k else empty_oneway_lines()
            if E>1:
                out+=twoway_lines(twoway([v for _,v in lines_all(cells)]))
    return '\n'.join(out)+'\n'
def parse(path,E,R):
    # phenotype rows after the genotype block: name + values, trait/env/rep order
    rows=[l.split() for l in open(path) if l.strip() and not l.startswith('!')]
    nm=int(rows[1][0]); P=int(rows[2][0]); T=int(rows[3][0])
    ph=rows[6+nm:]
    traits=[]
    for t in range(T):
        block=ph[t*E*R:(t+1)*E*R]
        name=block[0][0]
        val=lambda s: NA if s in ('NA','na','*','.','-') else float(s)
        cells=[[[val(block[e*R+r][1+i]) for r in range(R)] for e in range(E)] for i in range(P)]
        traits.append((name,cells))
    return traits
if __name__=='__main__':
    path,E,R=sys.argv[1],int(sys.argv[2]),int(sys.argv[3])
    sys.stdout.write(sta(parse(path,E,R),E,R))
