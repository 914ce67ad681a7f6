# Independent reference: statistics of line means, one-way and
# two-way analyses of variance in float64 with numpy/scipy.
import numpy as np, scipy.stats as st

def stats(x):
    x=np.asarray(x,dtype=np.float64); n=len(x)
    m=x.mean(); d=x-m; S=(d**2).sum()
    var=S/(n-1) if n>1 else float('nan')
    s2=S/n
    skew=(d**3).sum()/(n*s2**1.5) if n>1 and s2>0 else (0.0 if n>1 else float('nan'))
    kurt=(d**4).sum()/(n*s2**2)-3 if n>1 and s2>0 else (0.0 if n>1 else float('nan'))
    return dict(n=n,mean=m,var=var,sd=np.sqrt(var),skew=skew,kurt=kurt,min=x.min(),max=x.max(),range=x.max()-x.min())

# A fit worse than the mean alone counts as 0 %.
def adjusted(q): return 0.0 if q>1.0 else 100*(1-q)

def oneway(v):  # v[K,R]
    v=np.asarray(v,dtype=np.float64); K,R=v.shape
    gm=v.mean(); lm=v.mean(axis=1)
    ssa=R*((lm-gm)**2).sum(); sse=((v-lm[:,None])**2).sum()
    dfa=K-1; dfe=K*(R-1)
    F=(ssa/dfa)/(sse/dfe) if sse>0 else float('nan')
    P=st.f.sf(F,dfa,dfe)
    tot=ssa+sse
    return dict(df=(dfa,dfe,dfa+dfe),ss=(ssa,sse,tot),ms=(ssa/dfa,sse/dfe),F=F,P=P,
                r2=100*ssa/tot,adj=adjusted((sse/dfe)/(tot/(dfa+dfe))),sd=np.sqrt(sse/dfe),mean=gm)

def twoway(v):  # v[K,E,R]
    v=np.asarray(v,dtype=np.float64); K,E,R=v.shape
    gm=v.mean(); a=v.mean(axis=(1,2)); b=v.mean(axis=(0,2)); c=v.mean(axis=2)
    ssa=E*R*((a-gm)**2).sum(); ssb=K*R*((b-gm)**2).sum()
    ssab=R*((c-a[:,None]-b[None,:]+gm)**2).sum(); sse=((v-c[:,:,None])**2).sum()
    dfa,dfb,dfab,dfe=K-1,E-1,(K-1)*(E-1),K*E*(R-1)
    msm=(ssa+ssb+ssab)/(K*E-1); mse=sse/dfe
    res=dict(model=dict(df=K*E-1,ss=ssa+ssb+ssab,ms=msm,F=msm/mse,P=st.f.sf(msm/mse,K*E-1,dfe)),
             error=dict(df=dfe,ss=sse,ms=mse),total=dict(df=K*E*R-1,ss=ssa+ssb+ssab+sse),
             r2=100*(ssa+ssb+ssab)/(ssa+ssb+ssab+sse),adj=adjusted(mse/((ssa+ssb+ssab+sse)/(K*E*R-1))),sd=np.sqrt(mse),mean=gm)
    for name,ss,df in (('A',ssa,dfa),('B',ssb,dfb),('AxB',ssab,dfab)):
        res[name]=dict(df=df,ss=ss,ms=ss/df,F=(ss/df)/mse,P=st.f.sf((ss/df)/mse,df,dfe))
    return res
